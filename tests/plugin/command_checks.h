#pragma once

#include "command_record.h"
#include "exact_compare.h"
#include "host_record.h"
#include "message_log.h"
#include "sharing_spy.h"
#include "text.h"

#include <plugin_management/d_abstract_command.h>

#include <QPointer>
#include <QSignalSpy>
#include <QWeakPointer>
#include <QtTest>

/// A command of an invocation, with the record of what it asks of its base from now on.
template <typename Command>
class RecordedCommand
{
public:
    explicit RecordedCommand(const QVariantMap& arguments = {})
        : command(arguments, nullptr)
        , record(recordOf(command))
    {
        record.calls.clear();
    }

    /// Hands reply to the delegate of the instruction sent as number index, under that instruction's
    /// identifier.
    bool reply(int index, const QVariantMap& reply)
    {
        return replyAs(record.instructions.at(index).id, index, reply);
    }
    /// The same under another identifier.
    bool replyAs(quint64 id, int index, const QVariantMap& reply)
    {
        const auto onReply = record.instructions.at(index).onReply;
        return onReply(id, reply);
    }
    /// Links the tool channel "START" to the device channel "line0", and gives it a direction.
    void linkChannel(const QVariant& direction = QVariant())
    {
        record.channels.insert("START"_q, {"line0"_q, {{"direction"_q, direction}}});
    }

    Command command;
    CommandRecord& record;
};

inline QVariantMap onChannel(const QString& toolChannel)
{
    return {{"channel"_q, toolChannel}};
}

/// Checks that hold for every command class alike.
namespace command_checks {

using Declarations = QVector<CommandRecord::Declaration>;

inline QString declarationProblem(const Declarations& actual, const Declarations& expected)
{
    if (actual.size() != expected.size()) {
        return "%1 declarations instead of %2"_q.arg(actual.size()).arg(expected.size());
    }
    for (int i = 0; i < expected.size(); ++i) {
        const CommandRecord::Declaration& is = actual.at(i);
        const CommandRecord::Declaration& should = expected.at(i);
        if (is.name != should.name || is.typeTag != should.typeTag || is.description != should.description) {
            return "%1, %2, %3"_q.arg(is.name, is.typeTag, is.description);
        }
        const QString problem = difference(is.defaultValue, should.defaultValue);
        if (!problem.isEmpty()) {
            return is.name + ": "_q + problem;
        }
    }
    return QString();
}

inline void compareDeclarations(const Declarations& actual, const Declarations& expected)
{
    const QString problem = declarationProblem(actual, expected);
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

template <typename Command>
void metaObjectHasNothingOfItsOwn(const QString& className)
{
    const QMetaObject& meta = Command::staticMetaObject;
    QCOMPARE(QString::fromLatin1(meta.className()), className);
    QCOMPARE(meta.superClass(), &DAbstractCommand::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.constructorCount(), 0);
}

/// Both constructors declare the command by the same calls in the same order.
template <typename Command>
void constructionMakesTheCalls(const QStringList& calls)
{
    const Command invoked({{"any"_q, 1}}, nullptr);
    QCOMPARE(recordOf(invoked).calls, calls);
    QCOMPARE(recordOf(invoked).arguments, QVariantMap({{"any"_q, 1}}));
    QCOMPARE(invoked.parent(), nullptr);

    QObject owner;
    const Command prototype(&owner);
    QCOMPARE(recordOf(prototype).calls, calls);
    QCOMPARE(recordOf(prototype).arguments, QVariantMap());
    QCOMPARE(prototype.parent(), &owner);
}

template <typename Command>
void createCommandMakesAWorkingInstance()
{
    QObject owner;
    Command prototype(&owner);
    const QVariantMap arguments = {{"channel"_q, "START"_q}, {"other"_q, 5}};
    const QSharedPointer<ICommand> made = commandOfAnOrder(prototype, arguments);
    const auto* instance = dynamic_cast<Command*>(made.data());
    QVERIFY(instance != nullptr);
    QVERIFY(instance != &prototype);
    QCOMPARE(instance->metaObject(), &Command::staticMetaObject);
    QCOMPARE(recordOf(*instance).parent, &owner);
    QCOMPARE(instance->parent(), hostHas(HostHabit::KeepsParents) ? &owner : nullptr);
    QCOMPARE(recordOf(*instance).arguments, arguments);
    QCOMPARE(recordOf(prototype).arguments, QVariantMap());
    QCOMPARE(recordOf(*instance).name, recordOf(prototype).name);

    Command orphan(nullptr);
    const QSharedPointer<ICommand> madeByOrphan = commandOfAnOrder(orphan, {});
    QCOMPARE(recordOf(dynamic_cast<Command&>(*madeByOrphan)).parent, nullptr);
}

template <typename Command>
void sharedPointerOfCreateCommandIsTheOwner()
{
    QObject owner;
    Command prototype(&owner);
    const int markedBefore = objectsMarkedAsShared().size();
    QSharedPointer<ICommand> made = commandOfAnOrder(prototype, {});
    QObject* object = dynamic_cast<Command*>(made.data());
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
    QCOMPARE(owner.children(), QObjectList({&prototype}));
}

/// When the base refuses, nothing else is called and nothing is reported.
template <typename Command>
void baseRefusalIsSilent(const QVariantMap& arguments)
{
    RecordedCommand<Command> bench(arguments);
    bench.linkChannel("out"_q);
    bench.record.executeAnswer = false;
    const MessageLog log;
    QVERIFY(!bench.command.commandExecute());
    QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q}));
    QCOMPARE(log.texts(), QStringList());
}

/// Rows of invocations that name no tool channel.
inline void addRowsWithoutAChannel()
{
    QTest::addColumn<QVariantMap>("arguments");
    QTest::newRow("no parameter") << QVariantMap();
    QTest::newRow("an empty text") << onChannel(QString());
    QTest::newRow("an invalid value") << QVariantMap({{"channel"_q, QVariant()}});
    QTest::newRow("a value that is no text") << QVariantMap({{"channel"_q, QVariantList({1, 2})}});
}

/// Rows of directions that are not exactly "out".
inline void addRowsOfOtherDirections()
{
    QTest::addColumn<QVariant>("direction");
    QTest::newRow("in") << QVariant("in"_q);
    QTest::newRow("Out") << QVariant("Out"_q);
    QTest::newRow("OUT") << QVariant("OUT"_q);
    QTest::newRow("empty") << QVariant(QString());
    QTest::newRow("missing") << QVariant();
    QTest::newRow("padded") << QVariant("out "_q);
}

/// The command refuses to write on a channel of this direction, before it resolves the link or sends
/// anything.
template <typename Command>
void otherDirectionIsRefused(RecordedCommand<Command>& bench, const QVariant& direction)
{
    bench.linkChannel(direction);
    QVERIFY(!bench.command.commandExecute());
    QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "getParameterValue channel"_q,
                                              "getInfoFromChannel START direction as QString"_q}));
}

} // namespace command_checks
