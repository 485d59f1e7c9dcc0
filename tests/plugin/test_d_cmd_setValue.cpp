#include "command_checks.h"
#include "d_cmd_setValue.h"
#include "report_check.h"

#include <utilities/d_timer.h>

#include <limits>

using namespace command_checks;

namespace {

constexpr int c_highestInt = std::numeric_limits<int>::max();
constexpr int c_lowestInt = std::numeric_limits<int>::min();

QVariantMap invocation(const QString& state, const QVariantMap& further = {})
{
    QVariantMap arguments = onChannel("START"_q);
    arguments.insert("state"_q, state);
    for (auto item = further.cbegin(); item != further.cend(); ++item) {
        arguments.insert(item.key(), item.value());
    }
    return arguments;
}

QVariantMap request(int onWidth, int offWidth, int values, int interval, float fraction)
{
    return {{"channel"_q, "line0"_q}, {"pulseOnWidth"_q, onWidth}, {"pulseOffWidth"_q, offWidth},
            {"values"_q, values},     {"interval"_q, interval},    {"dutyCycle"_q, fraction}};
}

/// A setValue command whose tool channel is a linked output.
class OutputBench : public RecordedCommand<DCmdSetValue>
{
public:
    explicit OutputBench(const QVariantMap& arguments)
        : RecordedCommand(arguments)
    {
        linkChannel("out"_q);
    }

    DTimer* pulseTimer() const
    {
        return dynamic_cast<DTimer*>(command.findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly));
    }
};

} // namespace

class TestSetValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { resetHostRecord(); }

    void addsNothingToTheMetaObjectOfItsBase()
    {
        metaObjectHasNothingOfItsOwn<DCmdSetValue>("DCmdSetValue"_q);
    }

    void constructionDeclaresInOrder()
    {
        constructionMakesTheCalls<DCmdSetValue>({"construct setValue"_q, "setDescription"_q,
                                                 "declareAParameter channel"_q, "declareAParameter value"_q,
                                                 "declareAParameter state"_q, "declareAParameter duration"_q,
                                                 "declareAParameter dutyCycle"_q, "declareAResult doneOk"_q});
    }

    void declaresNameDescriptionParametersAndResult()
    {
        const RecordedCommand<DCmdSetValue> bench;
        QCOMPARE(bench.record.name, "setValue"_q);
        QVERIFY(bench.record.isStoppable);
        QCOMPARE(bench.record.stopName, "stopTheCommand"_q);
        QCOMPARE(bench.record.description, "Set the value of a GPIO pin"_q);
        compareDeclarations(bench.record.parameters,
                            {{"channel"_q, "strg"_q, "Channel"_q, QVariant()},
                             {"value"_q, "ui16"_q, "Value"_q, QVariant(1)},
                             {"state"_q, "strg"_q, "ON, OFF, PULSE or BLINK"_q, QVariant(""_q)},
                             {"duration"_q, "int"_q, "Cycle duration"_q, QVariant(1000)},
                             {"dutyCycle"_q, "int"_q, "Duty cycle in %"_q, QVariant(100)}});
        compareDeclarations(bench.record.results, {{"doneOk"_q, "bool"_q, "Job done"_q, QVariant(false)}});
    }

    void createCommandMakesAWorkingInstance()
    {
        command_checks::createCommandMakesAWorkingInstance<DCmdSetValue>();
    }

    void workingInstanceDiesWithItsSharedPointer() { sharedPointerOfCreateCommandIsTheOwner<DCmdSetValue>(); }

    void refusalOfTheBaseIsSilent() { baseRefusalIsSilent<DCmdSetValue>(invocation("ON"_q)); }

    void invocationWithoutAChannelIsRefused_data() { addRowsWithoutAChannel(); }
    void invocationWithoutAChannelIsRefused()
    {
        QFETCH(QVariantMap, arguments);
        arguments.insert("state"_q, "ON"_q);
        OutputBench bench(arguments);
        const MessageLog log;
        QVERIFY(!bench.command.commandExecute());
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_setValue"_q, "ERROR: Channel not managed"_q);
        QCOMPARE(bench.record.calls, QStringList({"commandExecute"_q, "getParameterValue channel"_q}));
    }

    void channelThatIsNoOutputIsRefused_data() { addRowsOfOtherDirections(); }
    void channelThatIsNoOutputIsRefused()
    {
        QFETCH(QVariant, direction);
        RecordedCommand<DCmdSetValue> bench(invocation("ON"_q));
        const MessageLog log;
        otherDirectionIsRefused(bench, direction);
        COMPARE_ONE_REPORT(log, bench.command, "d_cmd_setValue"_q,
                           "ERROR: Trying to write on an non output io"_q);
    }

    void unlinkedOutputIsWrittenWithAnEmptyChannel()
    {
        RecordedCommand<DCmdSetValue> bench(invocation("ON"_q));
        bench.record.channels.insert("START"_q, {QString(), {{"direction"_q, "out"_q}}});
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        COMPARE_EXACTLY(bench.record.instructions.first().arguments.value("channel"_q), QVariant(QString()));
        QCOMPARE(log.texts(), QStringList());
    }

    void parametersAreAskedForWithoutAFallback()
    {
        OutputBench bench(invocation("BLINK"_q));
        bench.command.commandExecute();
        QStringList asked = bench.record.calls.filter("getParameterValue"_q);
        asked.sort();
        QCOMPARE(asked, QStringList({"getParameterValue channel"_q, "getParameterValue duration"_q,
                                     "getParameterValue dutyCycle"_q, "getParameterValue state"_q,
                                     "getParameterValue value"_q}));
        QCOMPARE(bench.record.calls.filter("getLinkedChannel"_q), QStringList({"getLinkedChannel START"_q}));
    }

    void steadyStateSendsOneSetValues_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QVariantMap>("further");
        QTest::addColumn<QVariantMap>("expected");
        const QVariantMap on = request(65535, 0, 1, 65535, 1.0F);
        const QVariantMap off = request(0, 0, 0, 0, 0.0F);
        const QVariantMap unused = {{"value"_q, 7}, {"duration"_q, 20}, {"dutyCycle"_q, 30}};
        QTest::newRow("ON") << "ON"_q << QVariantMap() << on;
        QTest::newRow("ON has no use for the numbers") << "ON"_q << unused << on;
        QTest::newRow("ON has no use for a bool") << "ON"_q << QVariantMap({{"value"_q, false}}) << on;
        QTest::newRow("ON writes 1 even for the value 0") << "ON"_q << QVariantMap({{"value"_q, 0}}) << on;
        QTest::newRow("OFF") << "OFF"_q << QVariantMap() << off;
        QTest::newRow("OFF has no use for the numbers") << "OFF"_q << unused << off;
    }
    void steadyStateSendsOneSetValues()
    {
        QFETCH(QString, state);
        QFETCH(QVariantMap, further);
        QFETCH(QVariantMap, expected);
        OutputBench bench(invocation(state, further));
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.instructions.size(), 1);
        const CommandRecord::Instruction& sent = bench.record.instructions.first();
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.name, "setValues"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        COMPARE_EXACTLY(sent.arguments, expected);
        QVERIFY(bench.pulseTimer() == nullptr);
        QVERIFY(bench.record.updatedResults.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void blinkSendsTheWidthsOfItsCycle_data()
    {
        QTest::addColumn<int>("duration");
        QTest::addColumn<int>("dutyCycle");
        QTest::addColumn<int>("onWidth");
        QTest::addColumn<int>("offWidth");
        QTest::addColumn<int>("values");
        QTest::newRow("30 %") << 1000 << 30 << 300 << 700 << 5;
        QTest::newRow("33 % of 1000") << 1000 << 33 << 330 << 669 << 5;
        QTest::newRow("33 % of 999") << 999 << 33 << 329 << 669 << 5;
        QTest::newRow("1 % of 99") << 99 << 1 << 0 << 98 << 5;
        QTest::newRow("100 %") << 1000 << 100 << 1000 << 0 << 5;
        QTest::newRow("0 %") << 1000 << 0 << 0 << 1000 << 0;
        QTest::newRow("more than 16 bits") << 70000 << 100 << 4464 << 0 << 5;
        QTest::newRow("150 %") << 1000 << 150 << 1500 << 65036 << 5;
        QTest::newRow("minus 10 %") << 1000 << -10 << 65436 << 1100 << 0;
        QTest::newRow("no duration") << 0 << 30 << 0 << 0 << 5;
        QTest::newRow("a negative duration") << -1000 << 30 << 65236 << 64836 << 5;
        QTest::newRow("the longest") << c_highestInt << 100 << 0 << 0 << 5;
        QTest::newRow("half the longest") << c_highestInt << 50 << 0 << 0 << 5;
        QTest::newRow("the lowest duration") << c_lowestInt << 100 << 0 << 0 << 5;
        QTest::newRow("the highest duty cycle") << 1000 << c_highestInt << 0 << 0 << 5;
        QTest::newRow("the lowest duty cycle") << 1000 << c_lowestInt << 0 << 0 << 0;
        QTest::newRow("both highest") << c_highestInt << c_highestInt << 0 << 0 << 5;
        QTest::newRow("both lowest") << c_lowestInt << c_lowestInt << 0 << 0 << 0;
    }
    void blinkSendsTheWidthsOfItsCycle()
    {
        QFETCH(int, duration);
        QFETCH(int, dutyCycle);
        QFETCH(int, onWidth);
        QFETCH(int, offWidth);
        QFETCH(int, values);
        OutputBench bench(
            invocation("BLINK"_q, {{"value"_q, 5}, {"duration"_q, duration}, {"dutyCycle"_q, dutyCycle}}));
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.instructions.size(), 1);
        const CommandRecord::Instruction& sent = bench.record.instructions.first();
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.name, "setBlink"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        const float fraction = static_cast<float>(dutyCycle) / 100.0F;
        COMPARE_EXACTLY(sent.arguments, request(onWidth, offWidth, values, duration, fraction));
        QVERIFY(bench.pulseTimer() == nullptr);
    }

    void blinkUsesTheDeclaredDefaults()
    {
        OutputBench bench(invocation("BLINK"_q));
        QVERIFY(bench.command.commandExecute());
        COMPARE_EXACTLY(bench.record.instructions.first().arguments, request(1000, 0, 1, 1000, 1.0F));
    }

    void blinkWithTheValue0HasNoWidths_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("dutyCycle");
        QTest::newRow("30 %") << QVariant(0) << 30;
        QTest::newRow("0 %") << QVariant(0) << 0;
        QTest::newRow("150 %") << QVariant(0) << 150;
        QTest::newRow("a value whose low 16 bits are 0") << QVariant(65536) << 30;
        QTest::newRow("a value that is no number") << QVariant("high"_q) << 30;
    }
    void blinkWithTheValue0HasNoWidths()
    {
        QFETCH(QVariant, value);
        QFETCH(int, dutyCycle);
        OutputBench bench(invocation("BLINK"_q, {{"value"_q, value}, {"dutyCycle"_q, dutyCycle}}));
        QVERIFY(bench.command.commandExecute());
        const float fraction = static_cast<float>(dutyCycle) / 100.0F;
        COMPARE_EXACTLY(bench.record.instructions.first().arguments, request(0, 0, 0, 1000, fraction));
    }

    void blinkWritesTheLow16BitsOfTheValue_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("values");
        QTest::newRow("the highest") << QVariant(65535) << 65535;
        QTest::newRow("65537") << QVariant(65537) << 1;
        QTest::newRow("70000") << QVariant(70000) << 4464;
        QTest::newRow("minus one") << QVariant(-1) << 65535;
        QTest::newRow("a text") << QVariant("12"_q) << 12;
        QTest::newRow("a bool") << QVariant(true) << 1;
    }
    void blinkWritesTheLow16BitsOfTheValue()
    {
        QFETCH(QVariant, value);
        QFETCH(int, values);
        OutputBench bench(invocation("BLINK"_q, {{"value"_q, value}}));
        QVERIFY(bench.command.commandExecute());
        COMPARE_EXACTLY(bench.record.instructions.first().arguments.value("values"_q), QVariant(values));
    }

    void textThatNamesNoStateIsAcceptedAndDoesNothing_data()
    {
        QTest::addColumn<QVariantMap>("arguments");
        QTest::newRow("none") << onChannel("START"_q);
        QTest::newRow("empty") << invocation(QString());
        QTest::newRow("on") << invocation("on"_q);
        QTest::newRow("Blink") << invocation("Blink"_q);
        QTest::newRow("padded") << invocation("ON "_q);
        QTest::newRow("a code") << invocation("1"_q);
        QTest::newRow("unknown") << invocation("TOGGLE"_q);
    }
    void textThatNamesNoStateIsAcceptedAndDoesNothing()
    {
        QFETCH(QVariantMap, arguments);
        OutputBench bench(arguments);
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        QVERIFY(bench.record.instructions.isEmpty());
        QVERIFY(bench.record.updatedResults.isEmpty());
        QVERIFY(bench.pulseTimer() == nullptr);
        QCOMPARE(log.texts(), QStringList());
    }

    void replyReportsDone_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QVariantMap>("reply");
        QTest::newRow("ON") << "ON"_q << QVariantMap({{"channel"_q, "line0"_q}, {"values"_q, 1}});
        QTest::newRow("OFF") << "OFF"_q << QVariantMap({{"values"_q, 0}});
        QTest::newRow("BLINK") << "BLINK"_q << QVariantMap();
    }
    void replyReportsDone()
    {
        QFETCH(QString, state);
        QFETCH(QVariantMap, reply);
        OutputBench bench(invocation(state));
        bench.command.commandExecute();
        const MessageLog log;
        QVERIFY(bench.reply(0, reply));
        QCOMPARE(bench.record.updatedResults.size(), 1);
        QCOMPARE(bench.record.updatedResults.first().name, "doneOk"_q);
        COMPARE_EXACTLY(bench.record.updatedResults.first().value, QVariant(true));
        bench.record.updateAnswer = false;
        QVERIFY2(!bench.reply(0, reply), "the answer is that of the update");
        QCOMPARE(log.texts(), QStringList());
    }

    void replyWithoutAnIdentifierIsRejected_data()
    {
        QTest::addColumn<QString>("state");
        QTest::newRow("ON") << "ON"_q;
        QTest::newRow("PULSE") << "PULSE"_q;
    }
    void replyWithoutAnIdentifierIsRejected()
    {
        QFETCH(QString, state);
        OutputBench bench(invocation(state));
        bench.command.commandExecute();
        const MessageLog log;
        QVERIFY(!bench.replyAs(0, 0, {}));
        QVERIFY(bench.record.updatedResults.isEmpty());
        QCOMPARE(log.texts(), QStringList());
    }

    void pulseSetsUpItsTimerThenSendsThenStarts()
    {
        OutputBench bench(
            invocation("PULSE"_q, {{"value"_q, 9}, {"duration"_q, 70000}, {"dutyCycle"_q, 20}}));
        bool inspected = false;
        hostRecord().onCall = [&](const QString& call) {
            if (call.startsWith("addInstruction"_q)) {
                const DTimer* timer = bench.pulseTimer();
                inspected = timer != nullptr && timer->isSingleShot() && timer->interval() == 70000 &&
                            !timer->isActive();
            }
        };
        QVERIFY(bench.command.commandExecute());
        QVERIFY(inspected);
        QVERIFY(bench.pulseTimer()->isActive());
        QCOMPARE(bench.record.instructions.size(), 1);
        const CommandRecord::Instruction& sent = bench.record.instructions.first();
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.name, "setValues"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        COMPARE_EXACTLY(sent.arguments, request(4464, 0, 1, 70000, 1.0F));
    }

    void pulseEndsWithAClosingRequestAndReportsDone()
    {
        OutputBench bench(invocation("PULSE"_q, {{"duration"_q, 20}}));
        bench.record.updateAnswer = false;
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        DTimer* timer = bench.pulseTimer();
        const QMetaObject::Connection listener = connect(timer, &QTimer::timeout, this, [] {});
        QVERIFY(bench.reply(0, {{"values"_q, 1}}));
        QVERIFY2(bench.record.updatedResults.isEmpty(), "the reply to the start has no effect");
        bench.record.calls.clear();

        QTRY_COMPARE(bench.record.instructions.size(), 2);
        QCOMPARE(bench.record.calls,
                 QStringList({"addInstruction setValues"_q, "commandUpdateResult doneOk"_q}));
        const CommandRecord::Instruction& sent = bench.record.instructions.last();
        QCOMPARE(sent.target, "device"_q);
        QCOMPARE(sent.timeoutMs, 4000);
        COMPARE_EXACTLY(sent.arguments, request(0, 0, 0, 20, 0.0F));
        COMPARE_EXACTLY(bench.record.updatedResults.first().value, QVariant(true));
        QVERIFY(!timer->isActive());
        QVERIFY2(!listener, "every connection of the timer is cut");

        QVERIFY(bench.reply(1, {{"values"_q, 0}}));
        QCOMPARE(bench.record.updatedResults.size(), 1);
        QCOMPARE(log.texts(), QStringList());
    }

    void pulseOfNoDurationClosesAtOnceFromTheEventLoop()
    {
        OutputBench bench(invocation("PULSE"_q, {{"duration"_q, 0}}));
        QVERIFY(bench.command.commandExecute());
        QCOMPARE(bench.record.instructions.size(), 1);
        COMPARE_EXACTLY(bench.record.instructions.first().arguments, request(0, 0, 1, 0, 1.0F));
        QTRY_COMPARE(bench.record.instructions.size(), 2);
        COMPARE_EXACTLY(bench.record.instructions.last().arguments, request(0, 0, 0, 0, 0.0F));
        QCOMPARE(bench.record.updatedResults.size(), 1);
    }

    void pulseOfTheLongestDurationStartsLikeAnyOther()
    {
        OutputBench bench(invocation("PULSE"_q, {{"duration"_q, c_highestInt}}));
        QVERIFY(bench.command.commandExecute());
        COMPARE_EXACTLY(bench.record.instructions.first().arguments, request(0, 0, 1, c_highestInt, 1.0F));
        QVERIFY(bench.pulseTimer()->isActive());
        QCOMPARE(bench.pulseTimer()->interval(), c_highestInt);
    }

    void pulseOfANegativeDurationLastsUntilItIsStopped()
    {
        OutputBench bench(invocation("PULSE"_q, {{"duration"_q, c_lowestInt}}));
        const MessageLog log;
        QVERIFY(bench.command.commandExecute());
        COMPARE_EXACTLY(bench.record.instructions.first().arguments, request(0, 0, 1, c_lowestInt, 1.0F));
        QCoreApplication::processEvents();
        QCOMPARE(bench.record.instructions.size(), 1);
        bool ok = true;
        bench.command.finishTheCommand(ok);
        QVERIFY(!bench.pulseTimer()->isActive());
        QCOMPARE(bench.record.finishes, QVector<bool>({true}));
        QCOMPARE(log.texts(), QStringList({"QObject::startTimer: Timers cannot have negative intervals"_q}));
    }

    void stopDuringAPulseLeavesNoTimerAndSendsNothing()
    {
        OutputBench bench(invocation("PULSE"_q, {{"duration"_q, 0}}));
        bench.command.commandExecute();
        DTimer* timer = bench.pulseTimer();
        const QMetaObject::Connection listener = connect(timer, &QTimer::timeout, this, [] {});
        bench.record.calls.clear();
        bool ok = false;
        bench.command.finishTheCommand(ok);
        QVERIFY(!timer->isActive());
        QVERIFY2(!listener, "every connection of the timer is cut");

        QSignalSpy fired(timer, &QTimer::timeout);
        timer->start();
        QVERIFY(fired.wait());
        QCOMPARE(bench.record.calls, QStringList({"commandFinish"_q}));
        QCOMPARE(bench.record.instructions.size(), 1);
        QVERIFY(bench.record.updatedResults.isEmpty());
    }

    void finishPassesItsArgumentOn_data()
    {
        QTest::addColumn<bool>("ok");
        QTest::newRow("true") << true;
        QTest::newRow("false") << false;
    }
    void finishPassesItsArgumentOn()
    {
        QFETCH(bool, ok);
        OutputBench bench(invocation("ON"_q));
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"commandFinish"_q}));
        QCOMPARE(bench.record.finishes, QVector<bool>({ok}));
        QCOMPARE(bench.record.finishFlags, QVector<const bool*>({&ok}));
    }

    void finishAfterAPulseHasEndedOnlyFinishes()
    {
        OutputBench bench(invocation("PULSE"_q, {{"duration"_q, 0}}));
        bench.command.commandExecute();
        QTRY_COMPARE(bench.record.updatedResults.size(), 1);
        bench.record.calls.clear();
        bool ok = true;
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"commandFinish"_q}));
    }

    void pulseTimerDiesWithTheCommand()
    {
        QPointer<QTimer> timer;
        {
            OutputBench bench(invocation("PULSE"_q));
            bench.command.commandExecute();
            timer = bench.pulseTimer();
            QVERIFY(!timer.isNull());
        }
        QVERIFY(timer.isNull());
    }

    void instancesOfOnePrototypeShareNothing()
    {
        DCmdSetValue prototype(nullptr);
        const QSharedPointer<ICommand> pulse =
            prototype.createCommand(invocation("PULSE"_q, {{"duration"_q, 60000}}));
        const QSharedPointer<ICommand> on = prototype.createCommand(invocation("ON"_q));
        auto& pulsing = dynamic_cast<DCmdSetValue&>(*pulse);
        auto& steady = dynamic_cast<DCmdSetValue&>(*on);
        recordOf(pulsing).channels.insert("START"_q, {"line0"_q, {{"direction"_q, "out"_q}}});
        recordOf(steady).channels.insert("START"_q, {"line1"_q, {{"direction"_q, "out"_q}}});
        QVERIFY(pulse->commandExecute());
        QVERIFY(on->commandExecute());
        QVERIFY(on->setReply(recordOf(steady).instructions.first().id, {}));
        QVERIFY(recordOf(pulsing).updatedResults.isEmpty());
        bool ok = true;
        on->finishTheCommand(ok);
        QVERIFY(pulsing.findChild<QTimer*>()->isActive());
        QCOMPARE(recordOf(steady).instructions.first().arguments.value("channel"_q), QVariant("line1"_q));
        QCOMPARE(recordOf(pulsing).instructions.first().arguments.value("interval"_q), QVariant(60000));
        QVERIFY(recordOf(prototype).instructions.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSetValue)
#include "test_d_cmd_setValue.moc"
