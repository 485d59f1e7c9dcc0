#include "d_cmd_setValue.h"
#include "recorded_command.h"
#include "rows.h"

#include <utilities/d_timer.h>

class TestSetValue : public QuietTest
{
    Q_OBJECT

    static QVariantMap invocation(const QString& state, const QVariantMap& further = {})
    {
        QVariantMap arguments = onChannel("START"_s);
        arguments.insert("state"_s, state);
        for (auto item = further.cbegin(); item != further.cend(); ++item) {
            arguments.insert(item.key(), item.value());
        }
        return arguments;
    }

    static QVariantMap widths(int onWidth, int offWidth, int values, int interval, float fraction)
    {
        return {{"channel"_s, "line0"_s}, {"pulseOnWidth"_s, onWidth}, {"pulseOffWidth"_s, offWidth},
                {"values"_s, values},     {"interval"_s, interval},    {"dutyCycle"_s, fraction}};
    }

    using Recorded = RecordedCommand<DCmdSetValue>;
    using Executed = ExecutedCommand<DCmdSetValue>;

    static DTimer* pulseTimer(const Recorded& bench)
    {
        return dynamic_cast<DTimer*>(bench.command.findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly));
    }

private Q_SLOTS:
    void unlinkedOutputIsWrittenWithAnEmptyChannel()
    {
        Recorded bench(invocation("ON"_s));
        linkStart(bench.record, QString(), "out"_s);
        QVERIFY(bench.command.commandExecute());
        COMPARE_EXACTLY(bench.record.instructions.value(0).arguments.value("channel"_s), QVariant(QString()));
    }

    void parametersAreAskedForWithoutAFallback()
    {
        Executed bench(invocation("BLINK"_s));
        QStringList asked = bench.record.calls.filter("getParameterValue"_s);
        asked.sort();
        QCOMPARE(asked, QStringList({"getParameterValue channel"_s, "getParameterValue duration"_s,
                                     "getParameterValue dutyCycle"_s, "getParameterValue state"_s,
                                     "getParameterValue value"_s}));
        QCOMPARE(bench.record.calls.filter("getLinkedChannel"_s), QStringList({"getLinkedChannel START"_s}));
    }

    void steadyStateSendsOneSetValues_data()
    {
        const Rows<QString, QVariantMap, QVariantMap> row("state", "further", "expected");
        const QVariantMap on = widths(65535, 0, 1, 65535, 1.0F);
        const QVariantMap off = widths(0, 0, 0, 0, 0.0F);
        const QVariantMap unused = {{"value"_s, 7}, {"duration"_s, 20}, {"dutyCycle"_s, 30}};
        row("ON", "ON", {}, on);
        row("ON has no use for the numbers", "ON", unused, on);
        row("ON has no use for a bool", "ON", {{"value"_s, false}}, on);
        row("ON writes 1 even for the value 0", "ON", {{"value"_s, 0}}, on);
        row("OFF", "OFF", {}, off);
        row("OFF has no use for the numbers", "OFF", unused, off);
    }
    void steadyStateSendsOneSetValues()
    {
        const auto [state, further, expected] = Rows<QString, QVariantMap, QVariantMap>::values();
        Recorded bench(invocation(state, further));
        QVERIFY(bench.command.commandExecute());
        COMPARE_REQUESTS(bench.record, {{"setValues"_s, expected}});
        COMPARE_RESULTS(bench.record, {});
        QCOMPARE(pulseTimer(bench), nullptr);
    }

    void blinkSendsTheWidthsOfItsCycle_data()
    {
        const Rows<QVariantMap, QVariantMap> row("further", "expected");
        const auto cycle = [&row](const char* name, int duration, int dutyCycle, int onWidth, int offWidth,
                                  int values) {
            row(name, {{"value"_s, 5}, {"duration"_s, duration}, {"dutyCycle"_s, dutyCycle}},
                widths(onWidth, offWidth, values, duration, static_cast<float>(dutyCycle) / 100.0F));
        };
        cycle("30 %", 1000, 30, 300, 700, 5);
        cycle("33 % of 1000", 1000, 33, 330, 669, 5);
        cycle("33 % of 999", 999, 33, 329, 669, 5);
        cycle("1 % of 99", 99, 1, 0, 98, 5);
        cycle("100 %", 1000, 100, 1000, 0, 5);
        cycle("0 %", 1000, 0, 0, 1000, 0);
        cycle("more than 16 bits", 70000, 100, 4464, 0, 5);
        cycle("150 %", 1000, 150, 1500, 65036, 5);
        cycle("minus 10 %", 1000, -10, 65436, 1100, 0);
        cycle("no duration", 0, 30, 0, 0, 5);
        cycle("a negative duration", -1000, 30, 65236, 64836, 5);
        cycle("the longest", c_highestInt, 100, 0, 0, 5);
        cycle("half the longest", c_highestInt, 50, 0, 0, 5);
        cycle("the lowest duration", c_lowestInt, 100, 0, 0, 5);
        cycle("the highest duty cycle", 1000, c_highestInt, 0, 0, 5);
        cycle("the lowest duty cycle", 1000, c_lowestInt, 0, 0, 0);
        cycle("both highest", c_highestInt, c_highestInt, 0, 0, 5);
        cycle("both lowest", c_lowestInt, c_lowestInt, 0, 0, 0);
        row("the declared defaults", {}, widths(1000, 0, 1, 1000, 1.0F));
        const auto nothing = [&row](const char* name, const QVariant& value, int dutyCycle) {
            row(name, {{"value"_s, value}, {"dutyCycle"_s, dutyCycle}},
                widths(0, 0, 0, 1000, static_cast<float>(dutyCycle) / 100.0F));
        };
        nothing("the value 0, 30 %", 0, 30);
        nothing("the value 0, 0 %", 0, 0);
        nothing("the value 0, 150 %", 0, 150);
        nothing("a value whose low 16 bits are 0", 65536, 30);
        nothing("a value that is no number", "high"_s, 30);
        const auto low16Bits = [&row](const char* name, const QVariant& value, int values) {
            row(name, {{"value"_s, value}}, widths(1000, 0, values, 1000, 1.0F));
        };
        low16Bits("the value 65535", 65535, 65535);
        low16Bits("the value 65537", 65537, 1);
        low16Bits("the value 70000", 70000, 4464);
        low16Bits("the value minus one", -1, 65535);
        low16Bits("a text as the value", "12"_s, 12);
        low16Bits("a bool as the value", true, 1);
    }
    void blinkSendsTheWidthsOfItsCycle()
    {
        const auto [further, expected] = Rows<QVariantMap, QVariantMap>::values();
        Recorded bench(invocation("BLINK"_s, further));
        QVERIFY(bench.command.commandExecute());
        COMPARE_REQUESTS(bench.record, {{"setBlink"_s, expected}});
        QCOMPARE(pulseTimer(bench), nullptr);
    }

    void textThatNamesNoStateIsAcceptedAndDoesNothing_data()
    {
        const Rows<QVariantMap> row("arguments");
        row("none", onChannel("START"_s));
        row("empty", invocation(QString()));
        row("on", invocation("on"_s));
        row("Blink", invocation("Blink"_s));
        row("padded", invocation("ON "_s));
        row("a code", invocation("1"_s));
        row("unknown", invocation("TOGGLE"_s));
    }
    void textThatNamesNoStateIsAcceptedAndDoesNothing()
    {
        QFETCH(QVariantMap, arguments);
        Recorded bench(arguments);
        QVERIFY(bench.command.commandExecute());
        COMPARE_REQUESTS(bench.record, {});
        COMPARE_RESULTS(bench.record, {});
        QCOMPARE(pulseTimer(bench), nullptr);
    }

    void replyReportsDone_data()
    {
        const Rows<QString, QVariantMap> row("state", "reply");
        row("ON", "ON", {{"channel"_s, "line0"_s}, {"values"_s, 1}});
        row("OFF", "OFF", {{"values"_s, 0}});
        row("BLINK", "BLINK", {});
    }
    void replyReportsDone()
    {
        const auto [state, reply] = Rows<QString, QVariantMap>::values();
        Executed bench(invocation(state));
        QVERIFY(bench.reply(0, reply));
        COMPARE_RESULTS(bench.record, {{"doneOk"_s, true}});
        bench.record.updateAnswer = false;
        QVERIFY2(!bench.reply(0, reply), "the answer is that of the update");
    }

    void replyWithoutAnIdentifierIsRejected()
    {
        for (const QString& state : {"ON"_s, "PULSE"_s}) {
            Executed bench(invocation(state));
            QVERIFY(!bench.replyAs(0, 0, {}));
            COMPARE_RESULTS(bench.record, {});
        }
    }

    void pulseSetsUpItsTimerThenSendsThenStarts()
    {
        Recorded bench(invocation("PULSE"_s, {{"value"_s, 9}, {"duration"_s, 70000}, {"dutyCycle"_s, 20}}));
        bool inspected = false;
        hostRecord().onCall = [&](const QString& call) {
            if (call.startsWith("addInstruction"_s)) {
                const DTimer* timer = pulseTimer(bench);
                inspected = timer != nullptr && timer->isSingleShot() && timer->interval() == 70000 &&
                            !timer->isActive();
            }
        };
        QVERIFY(bench.command.commandExecute());
        QVERIFY(inspected);
        QVERIFY(pulseTimer(bench)->isActive());
        COMPARE_REQUESTS(bench.record, {{"setValues"_s, widths(4464, 0, 1, 70000, 1.0F)}});
    }

    void pulseEndsWithAClosingRequestAndReportsDone()
    {
        Recorded bench(invocation("PULSE"_s, {{"duration"_s, 20}}));
        bench.record.updateAnswer = false;
        QVERIFY(bench.command.commandExecute());
        DTimer* timer = pulseTimer(bench);
        const QMetaObject::Connection listener = connect(timer, &QTimer::timeout, this, [] {});
        QVERIFY(bench.reply(0, {{"values"_s, 1}}));
        COMPARE_RESULTS(bench.record, {}); // the reply to the start has no effect
        bench.record.calls.clear();

        QTRY_COMPARE(bench.record.instructions.size(), 2);
        QCOMPARE(bench.record.calls,
                 QStringList({"addInstruction setValues"_s, "commandUpdateResult doneOk"_s}));
        COMPARE_REQUESTS(bench.record, {{"setValues"_s, widths(20, 0, 1, 20, 1.0F)},
                                        {"setValues"_s, widths(0, 0, 0, 20, 0.0F)}});
        QVERIFY(!timer->isActive());
        QVERIFY2(!listener, "every connection of the timer is cut");

        QVERIFY(bench.reply(1, {{"values"_s, 0}}));
        COMPARE_RESULTS(bench.record, {{"doneOk"_s, true}});
    }

    void pulseOfNoDurationClosesAtOnceFromTheEventLoop()
    {
        Executed bench(invocation("PULSE"_s, {{"duration"_s, 0}}));
        COMPARE_REQUESTS(bench.record, {{"setValues"_s, widths(0, 0, 1, 0, 1.0F)}});
        QTRY_COMPARE(bench.record.instructions.size(), 2);
        COMPARE_EXACTLY(bench.record.instructions.last().arguments, widths(0, 0, 0, 0, 0.0F));
        COMPARE_RESULTS(bench.record, {{"doneOk"_s, true}});
        bench.record.calls.clear();
        bool ok = true;
        bench.command.finishTheCommand(ok);
        QCOMPARE(bench.record.calls, QStringList({"commandFinish"_s}));
    }

    void pulseOfTheLongestDurationStartsLikeAnyOther()
    {
        const Executed bench(invocation("PULSE"_s, {{"duration"_s, c_highestInt}}));
        COMPARE_REQUESTS(bench.record, {{"setValues"_s, widths(0, 0, 1, c_highestInt, 1.0F)}});
        QVERIFY(pulseTimer(bench)->isActive());
        QCOMPARE(pulseTimer(bench)->interval(), c_highestInt);
    }

    void pulseOfANegativeDurationLastsUntilItIsStopped()
    {
        Recorded bench(invocation("PULSE"_s, {{"duration"_s, c_lowestInt}}));
        QVERIFY(bench.command.commandExecute());
        QCoreApplication::processEvents();
        COMPARE_REQUESTS(bench.record, {{"setValues"_s, widths(0, 0, 1, c_lowestInt, 1.0F)}});
        bool ok = true;
        bench.command.finishTheCommand(ok);
        QVERIFY(!pulseTimer(bench)->isActive());
        QCOMPARE(bench.record.finishes, QVector<bool>({true}));
        QCOMPARE(takeTexts(), QStringList({"QObject::startTimer: Timers cannot have negative intervals"_s}));
    }

    void stopDuringAPulseLeavesNoTimerAndSendsNothing()
    {
        Executed bench(invocation("PULSE"_s, {{"duration"_s, 0}}));
        DTimer* timer = pulseTimer(bench);
        const QMetaObject::Connection listener = connect(timer, &QTimer::timeout, this, [] {});
        bench.record.calls.clear();
        bool ok = false;
        bench.command.finishTheCommand(ok);
        QVERIFY(!timer->isActive());
        QVERIFY2(!listener, "every connection of the timer is cut");

        QSignalSpy fired(timer, &QTimer::timeout);
        timer->start();
        QVERIFY(fired.wait());
        QCOMPARE(bench.record.calls, QStringList({"commandFinish"_s}));
        QCOMPARE(bench.record.finishFlags, QVector<const bool*>({&ok}));
        COMPARE_RESULTS(bench.record, {});
    }

    void pulseTimerDiesWithTheCommand()
    {
        QPointer<QTimer> timer;
        {
            const Executed bench(invocation("PULSE"_s));
            timer = pulseTimer(bench);
            QVERIFY(!timer.isNull());
        }
        QVERIFY(timer.isNull());
    }
};

QTEST_GUILESS_MAIN(TestSetValue)
#include "test_d_cmd_setValue.moc"
