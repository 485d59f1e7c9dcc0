#include "d_cmd_getValue.h"
#include "d_cmd_initGpio.h"
#include "d_cmd_listenEvents.h"
#include "d_cmd_listenToAll.h"
#include "d_cmd_setValue.h"
#include "d_cmd_switchValue.h"
#include "meta_object_text.h"
#include "recorded_command.h"
#include "rows.h"
#include "sharing_spy.h"

#include <memory>

namespace {

using Declaration = CommandRecord::Declaration;
using Declarations = QVector<Declaration>;

/// What the skeleton of a command is told apart by.
struct CommandClass
{
    QString className;
    QString name;
    QString stopName; ///< null without one
    QString description;
    Declarations parameters;
    Declarations results;
    const QMetaObject* meta = nullptr;
    std::function<DAbstractCommand*(const QVariantMap&, QObject*)> makeWorking = {};
    std::function<DAbstractCommand*(QObject*)> makePrototype = {};
};

template <typename Command>
CommandClass of(CommandClass kind)
{
    kind.meta = &Command::staticMetaObject;
    kind.makeWorking = [](const QVariantMap& arguments, QObject* parent) {
        return new Command(arguments, parent);
    };
    kind.makePrototype = [](QObject* parent) { return new Command(parent); };
    return kind;
}

const QVector<CommandClass>& commandClasses()
{
    const Declaration channel = {"channel"_s, "strg"_s, "Channel"_s, QVariant()};
    const Declaration value = {"value"_s, "ui16"_s, "Value"_s, QVariant()};
    const Declaration doneOk = {"doneOk"_s, "bool"_s, "Job done"_s, QVariant(false)};
    static const QVector<CommandClass> classes = {
        of<DCmdSetValue>({"DCmdSetValue"_s,
                          "setValue"_s,
                          "stopTheCommand"_s,
                          "Set the value of a GPIO pin"_s,
                          {channel,
                           {"value"_s, "ui16"_s, "Value"_s, 1},
                           {"state"_s, "strg"_s, "ON, OFF, PULSE or BLINK"_s, ""_s},
                           {"duration"_s, "int"_s, "Cycle duration"_s, 1000},
                           {"dutyCycle"_s, "int"_s, "Duty cycle in %"_s, 100}},
                          {doneOk}}),
        of<DCmdSwitchValue>(
            {"DCmdSwitchValue"_s, "switchValue"_s, {}, "Set the value of a GPIO pin"_s, {channel}, {doneOk}}),
        of<DCmdGetValue>(
            {"DCmdGetValue"_s, "getValue"_s, {}, "Get the value of a GPIO pin"_s, {channel}, {value}}),
        of<DCmdListenEvents>({"DCmdListenEvents"_s,
                              "startListening"_s,
                              "stopListening"_s,
                              "Listen events from the gpio channel"_s,
                              {channel,
                               {"edge"_s, "strg"_s,
                                "Edge detection mode: RE: Rising Edge, FE: falling Edge, HL: hight level, "
                                "LL: low level, default: déactivated"_s,
                                ""_s}},
                              {value, {"lastValue"_s, "ui16"_s, "Last value"_s, QVariant()}}}),
        of<DCmdInitGpio>({"DCmdInitGpio"_s, "init"_s, {}, "Set initia values of a GPIO pin"_s, {}, {doneOk}}),
        of<DCmdListenToAll>({"DCmdListenToAll"_s,
                             "listenToAll"_s,
                             "stopListening"_s,
                             "Listen events from the gpio channel"_s,
                             {},
                             {{"value"_s, "vart"_s, "All gpio value in decimal"_s, QVariant()}}})};
    return classes;
}

const CommandClass& classNamed(const QString& name)
{
    const auto& classes = commandClasses();
    return *std::find_if(classes.cbegin(), classes.cend(),
                         [&name](const CommandClass& kind) { return kind.name == name; });
}

QStringList namesOfAll()
{
    QStringList names;
    for (const CommandClass& kind : commandClasses()) {
        names.append(kind.name);
    }
    return names;
}

/// The class of the row that runs, which is called "name" or "name, case".
const CommandClass& rowsClass()
{
    return classNamed(QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(','), 0, 0));
}

QString sourceOf(const CommandClass& kind)
{
    return "d_cmd_"_s + kind.className.mid(4, 1).toLower() + kind.className.mid(5);
}

/// The calls by which a command declares itself.
QStringList declaringCalls(const CommandClass& kind)
{
    QStringList calls = {"construct "_s + kind.name, "setDescription"_s};
    for (const Declaration& parameter : kind.parameters) {
        calls.append("declareAParameter "_s + parameter.name);
    }
    for (const Declaration& result : kind.results) {
        calls.append("declareAResult "_s + result.name);
    }
    return calls;
}

QString declarationProblem(const Declarations& actual, const Declarations& expected)
{
    return differenceOfLists(actual, expected, [](const Declaration& is, const Declaration& should) {
        return is.name == should.name && is.typeTag == should.typeTag && is.description == should.description
                   ? difference(is.defaultValue, should.defaultValue)
                   : QStringList{is.name, is.typeTag, is.description}.join(", "_s);
    });
}

std::unique_ptr<DAbstractCommand> workingCommand(const CommandClass& kind, const QVariantMap& arguments)
{
    std::unique_ptr<DAbstractCommand> command(kind.makeWorking(arguments, nullptr));
    linkStart(recordOf(*command), "line0"_s, "out"_s);
    recordOf(*command).calls.clear();
    return command;
}

} // namespace

/// What all commands have in common; the rows are called by the commands.
class TestCommandClasses : public QuietTest
{
    Q_OBJECT

private Q_SLOTS:
    void addsNothingToTheMetaObjectOfItsBase_data() { addRows(); }
    void addsNothingToTheMetaObjectOfItsBase()
    {
        QCOMPARE(metaObjectText(*rowsClass().meta),
                 QStringList(rowsClass().className + ": DAbstractCommand"_s));
    }

    void bothConstructorsDeclareInTheSameOrder_data() { addRows(); }
    void bothConstructorsDeclareInTheSameOrder()
    {
        QObject owner;
        const QVariantMap arguments = {{"any"_s, 1}};
        const std::unique_ptr<DAbstractCommand> working(rowsClass().makeWorking(arguments, nullptr));
        const std::unique_ptr<DAbstractCommand> prototype(rowsClass().makePrototype(&owner));
        QCOMPARE(recordOf(*working).calls, declaringCalls(rowsClass()));
        QCOMPARE(recordOf(*prototype).calls, declaringCalls(rowsClass()));
        QCOMPARE(recordOf(*working).arguments, arguments);
        QCOMPARE(recordOf(*prototype).arguments, QVariantMap());
        QCOMPARE(working->parent(), nullptr);
        QCOMPARE(prototype->parent(), &owner);
    }

    void declaresNameDescriptionParametersAndResults_data() { addRows(); }
    void declaresNameDescriptionParametersAndResults()
    {
        const CommandClass& kind = rowsClass();
        const auto command = workingCommand(kind, {});
        const CommandRecord& record = recordOf(*command);
        QCOMPARE(record.name, kind.name);
        QCOMPARE(record.isStoppable, !kind.stopName.isNull());
        QCOMPARE(record.stopName, kind.stopName);
        QCOMPARE(record.description, kind.description);
        REQUIRE_NO_PROBLEM(declarationProblem(record.parameters, kind.parameters));
        REQUIRE_NO_PROBLEM(declarationProblem(record.results, kind.results));
    }

    void createCommandMakesAWorkingInstance_data() { addRows(); }
    void createCommandMakesAWorkingInstance()
    {
        QObject owner;
        const std::unique_ptr<DAbstractCommand> prototype(rowsClass().makePrototype(&owner));
        const QVariantMap arguments = {{"channel"_s, "START"_s}, {"other"_s, 5}};
        const QSharedPointer<ICommand> made = commandOfAnOrder(*prototype, arguments);
        const auto* instance = dynamic_cast<DAbstractCommand*>(made.data());
        QVERIFY(instance != nullptr && instance != prototype.get());
        QCOMPARE(instance->metaObject(), rowsClass().meta);
        QCOMPARE(recordOf(*instance).parent, &owner);
        QCOMPARE(instance->parent(), hostHas(HostHabit::KeepsParents) ? &owner : nullptr);
        QCOMPARE(recordOf(*instance).arguments, arguments);
        QCOMPARE(recordOf(*prototype).arguments, QVariantMap());

        const std::unique_ptr<DAbstractCommand> orphan(rowsClass().makePrototype(nullptr));
        const QSharedPointer<ICommand> madeByOrphan = commandOfAnOrder(*orphan, {});
        QCOMPARE(recordOf(dynamic_cast<DAbstractCommand&>(*madeByOrphan)).parent, nullptr);
    }

    void workingInstanceDiesWithItsSharedPointer_data() { addRows(); }
    void workingInstanceDiesWithItsSharedPointer()
    {
        QObject owner;
        DAbstractCommand* prototype = rowsClass().makePrototype(&owner);
        const int markedBefore = objectsMarkedAsShared().size();
        QSharedPointer<ICommand> made = commandOfAnOrder(*prototype, {});
        QObject* object = dynamic_cast<DAbstractCommand*>(made.data());
        QCOMPARE(objectsMarkedAsShared().mid(markedBefore), QVector<const QObject*>({object}));
        const QPointer<QObject> tracked(object);
        const QWeakPointer<ICommand> weak(made);
        const QSignalSpy destroyed(object, &QObject::destroyed);
        QSharedPointer<ICommand> second = weak.toStrongRef();
        made.clear();
        QVERIFY(!tracked.isNull());
        second.clear();
        QVERIFY(tracked.isNull());
        QVERIFY(weak.isNull());
        QCOMPARE(destroyed.count(), 1);
        QCOMPARE(owner.children(), QObjectList({prototype}));
    }

    void refusalOfTheBaseIsSilentAndEndsAllButInit_data() { addRows(); }
    void refusalOfTheBaseIsSilentAndEndsAllButInit()
    {
        const auto command = workingCommand(rowsClass(), {{"channel"_s, "START"_s}, {"state"_s, "ON"_s}});
        recordOf(*command).executeAnswer = false;
        QVERIFY(!command->commandExecute());
        QStringList calls = {"commandExecute"_s};
        if (rowsClass().name == "init"_s) {
            calls += {"commandUpdateResult doneOk"_s, "getParametersSection channels"_s};
        }
        QCOMPARE(recordOf(*command).calls, calls);
    }

    void invocationWithoutAChannelReachesNeitherLinkNorDevice_data()
    {
        const Rows<QString, bool> row("text", "answer");
        row("setValue", "ERROR: Channel not managed", false);
        row("switchValue", "ERROR: Channel not managed", false);
        row("getValue", "ERROR: Tool channel is empty", true);
        row("startListening", "ERROR: Channel not managed", false);
    }
    void invocationWithoutAChannelReachesNeitherLinkNorDevice()
    {
        const auto [text, answer] = Rows<QString, bool>::values();
        const QVector<QVariantMap> withoutAChannel = {
            {}, onChannel(QString()), {{"channel"_s, QVariant()}}, {{"channel"_s, QVariantList{1, 2}}}};
        for (QVariantMap arguments : withoutAChannel) {
            arguments.insert("state"_s, "ON"_s);
            const auto command = workingCommand(rowsClass(), arguments);
            QCOMPARE(command->commandExecute(), answer);
            COMPARE_ONE_REPORT(*command, sourceOf(rowsClass()), text);
            QCOMPARE(recordOf(*command).calls,
                     QStringList({"commandExecute"_s, "getParameterValue channel"_s}));
        }
    }

    void writingOnAnotherDirectionThanOutIsRefused_data()
    {
        const Rows<QVariant> row("direction");
        for (const char* command : {"setValue", "switchValue"}) {
            const QByteArray name = command;
            row(name + ", in", "in"_s);
            row(name + ", Out", "Out"_s);
            row(name + ", OUT", "OUT"_s);
            row(name + ", empty", QString());
            row(name + ", missing", QVariant());
            row(name + ", padded", "out "_s);
        }
    }
    void writingOnAnotherDirectionThanOutIsRefused()
    {
        QFETCH(QVariant, direction);
        const auto command = workingCommand(rowsClass(), {{"channel"_s, "START"_s}, {"state"_s, "ON"_s}});
        linkStart(recordOf(*command), "line0"_s, direction);
        QVERIFY(!command->commandExecute());
        COMPARE_ONE_REPORT(*command, sourceOf(rowsClass()), "ERROR: Trying to write on an non output io"_s);
        QCOMPARE(recordOf(*command).calls, QStringList({"commandExecute"_s, "getParameterValue channel"_s,
                                                        "getInfoFromChannel START direction as QString"_s}));
    }

    void executeSendsOneRequest_data()
    {
        const Rows<QStringList, QVariantMap> row("calls", "arguments");
        const QString channel = "getParameterValue channel"_s;
        const QString link = "getLinkedChannel START"_s;
        const QVariantMap line = onChannel("line0"_s);
        row("switchValue",
            {channel, "getInfoFromChannel START direction as QString"_s, link, "addInstruction getValue"_s},
            line);
        row("getValue", {channel, link, "addInstruction getValue"_s}, line);
        row("startListening, without an edge mode",
            {channel, "getParameterValue edge"_s, link, "addInstruction listenEvents"_s}, line);
        row("startListening, RE",
            {channel, "getParameterValue edge"_s, link, "addInstruction listenEvents"_s}, line);
        row("listenToAll", {"addInstruction listenToAll"_s}, {});
    }
    void executeSendsOneRequest()
    {
        const auto [calls, arguments] = Rows<QStringList, QVariantMap>::values();
        const QString edge = QString::fromLatin1(QTest::currentDataTag()).section(", "_s, 1);
        const auto command = workingCommand(rowsClass(), {{"channel"_s, "START"_s}, {"edge"_s, edge}});
        QVERIFY(command->commandExecute());
        QCOMPARE(recordOf(*command).calls, QStringList("commandExecute"_s) + calls);
        COMPARE_REQUESTS(recordOf(*command), {{calls.last().section(QLatin1Char(' '), 1), arguments}});
    }

    void replyIsTakenUnderAnyIdentifier_data()
    {
        addRows({"switchValue"_s, "getValue"_s, "startListening"_s, "listenToAll"_s});
    }
    void replyIsTakenUnderAnyIdentifier()
    {
        for (const QString& edge : {""_s, "HL"_s}) {
            const auto command = workingCommand(rowsClass(), {{"channel"_s, "START"_s}, {"edge"_s, edge}});
            command->commandExecute();
            const auto onReply = recordOf(*command).instructions.first().onReply;
            QVERIFY(onReply(0, {{"value"_s, 1}, {"values"_s, QVariantList{1}}}));
        }
    }

    void replyWithoutValueIsRejected_data()
    {
        const Rows<QVariantMap, QString> row("reply", "text");
        const QVector<QPair<QByteArray, QString>> texts = {
            {"switchValue", "ERROR: Invalid reply format"_s},
            {"getValue", "ERROR: Invalid reply format"_s},
            {"listenToAll", "ERROR: reply does not contain values"_s}};
        for (const auto& [command, text] : texts) {
            row(command + ", empty", {}, text);
            row(command + ", another case", {{"Value"_s, 1}}, text);
            row(command + ", values", {{"values"_s, 37}}, text);
        }
    }
    void replyWithoutValueIsRejected()
    {
        const auto [reply, text] = Rows<QVariantMap, QString>::values();
        const auto command = workingCommand(rowsClass(), onChannel("START"_s));
        command->commandExecute();
        const CommandRecord& record = recordOf(*command);
        const auto onReply = record.instructions.first().onReply;
        QVERIFY(!onReply(1, reply));
        COMPARE_ONE_REPORT(*command, sourceOf(rowsClass()), text);
        COMPARE_RESULTS(record, {});
        QCOMPARE(record.instructions.size(), 1);
        QVERIFY2(onReply(1, {{"value"_s, 1}}), "later replies are handled normally");
    }

    void instancesOfOnePrototypeShareNothingAndStopOnlyTheirOwnRequest_data() { addRows(); }
    void instancesOfOnePrototypeShareNothingAndStopOnlyTheirOwnRequest()
    {
        const QVariantMap arguments = {{"channel"_s, "START"_s}, {"state"_s, "PULSE"_s}};
        const std::unique_ptr<DAbstractCommand> prototype(rowsClass().makePrototype(nullptr));
        const QSharedPointer<ICommand> first = prototype->createCommand(arguments);
        const QSharedPointer<ICommand> second = prototype->createCommand(arguments);
        CommandRecord& firstRecord = recordOf(dynamic_cast<DAbstractCommand&>(*first));
        CommandRecord& secondRecord = recordOf(dynamic_cast<DAbstractCommand&>(*second));
        linkStart(firstRecord, "line0"_s, "out"_s);
        linkStart(secondRecord, "line1"_s, "out"_s);
        secondRecord.nextInstructionId = 7;

        first->commandExecute();
        const int updates = firstRecord.updatedResults.size();
        QCOMPARE(secondRecord.calls, declaringCalls(rowsClass()));
        second->commandExecute();
        QCOMPARE(firstRecord.instructions.size(), secondRecord.instructions.size());
        if (!secondRecord.instructions.isEmpty()) {
            const QVariantMap request = secondRecord.instructions.first().arguments;
            QCOMPARE(request.value("channel"_s, "line1"_s), QVariant("line1"_s));
            second->setReply(7, {{"value"_s, 1}, {"values"_s, QVariantList{1}}});
        }
        bool ok = true;
        second->finishTheCommand(ok);
        QCOMPARE(firstRecord.updatedResults.size(), updates);
        QVERIFY(firstRecord.replies.isEmpty());
        QVERIFY(firstRecord.stoppedInstructions.isEmpty());
        const bool listens = rowsClass().stopName == "stopListening"_s;
        QCOMPARE(secondRecord.stoppedInstructions, listens ? QVector<quint64>{7} : QVector<quint64>());
        const auto* pulse = dynamic_cast<DAbstractCommand&>(*first).findChild<QTimer*>();
        QCOMPARE(pulse != nullptr && pulse->isActive(), rowsClass().name == "setValue"_s);
        QCOMPARE(recordOf(*prototype).calls, declaringCalls(rowsClass()));
    }

    void stopBeforeAnyRequestOnlyFinishes_data()
    {
        const Rows<QStringList, bool> row("calls", "passesItsArgumentOn");
        const QStringList byItself = {"commandFinish"_s};
        const QStringList byItsBase = {"finishTheCommand"_s, "commandFinish"_s};
        row("setValue", byItself, true);
        row("switchValue", byItself, true);
        row("getValue", byItsBase, true);
        row("startListening", byItself, false);
        row("init", byItsBase, true);
        row("listenToAll", byItself, false);
    }
    void stopBeforeAnyRequestOnlyFinishes()
    {
        const auto [calls, passesItsArgumentOn] = Rows<QStringList, bool>::values();
        for (const bool told : {true, false}) {
            const auto command = workingCommand(rowsClass(), {});
            bool ok = told;
            command->finishTheCommand(ok);
            const CommandRecord& record = recordOf(*command);
            QCOMPARE(record.calls, calls);
            QCOMPARE(record.finishes, QVector<bool>({told || !passesItsArgumentOn}));
            QCOMPARE(record.finishFlags.first() == &ok, passesItsArgumentOn);
            QCOMPARE(ok, told);
        }
    }

    void stopEndsTheRequestOfAListenerAndFinishesWithTrue_data()
    {
        addRows({"startListening"_s, "listenToAll"_s});
    }
    void stopEndsTheRequestOfAListenerAndFinishesWithTrue()
    {
        for (const bool told : {true, false}) {
            const auto command = workingCommand(rowsClass(), onChannel("START"_s));
            CommandRecord& record = recordOf(*command);
            record.nextInstructionId = 42;
            command->commandExecute();
            record.calls.clear();
            bool ok = told;
            command->finishTheCommand(ok);
            QCOMPARE(record.calls, QStringList({"stopTheInstruction 42"_s, "commandFinish"_s}));
            QCOMPARE(record.finishes, QVector<bool>({true}));
            QVERIFY(record.finishFlags.first() != &ok);
            QCOMPARE(ok, told);
            command->finishTheCommand(ok);
            QCOMPARE(record.stoppedInstructions, QVector<quint64>({42, 42}));
        }
    }

private:
    static void addRows(const QStringList& names = namesOfAll())
    {
        const Rows<QString> row("className");
        for (const QString& name : names) {
            row(name.toUtf8(), classNamed(name).className);
        }
    }
};

QTEST_GUILESS_MAIN(TestCommandClasses)
#include "test_command_classes.moc"
