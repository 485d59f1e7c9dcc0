#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QtTest>

namespace {

BenchRun runOrder(const QString& words, const QStringList& options = {})
{
    return runBench(options + QStringList{"run"_s} + words.split(QLatin1Char(' ')));
}

} // namespace

/// The subcommand "run".
class TestRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void getValuePrintsANumber()
    {
        QCOMPARE(runOrder("getValue channel=ALARM"_s), (BenchRun{0, "[1] getValue: value=1\n"}));
        const QByteArray json =
            R"({"type":"result","order":1,"tool":"Front panel","command":"getValue","channel":"ALARM",)"
            R"("arguments":{"channel":"ALARM"},"results":{"value":1}})";
        QCOMPARE(runOrder("getValue channel=ALARM --json"_s), (BenchRun{0, json + '\n'}));
    }

    void aRefusedOrderPrintsTheErrorReportAndEndsWithStatus1_data()
    {
        const Rows<QString, QString, QString, QString, QString> row("words", "type", "source", "text",
                                                                    "reason");
        const char* sentNothing = "the command sent no device request";
        const char* refused = "the command refused to run";
        row("empty channel", "getValue channel=", "DCmdGetValue", "d_cmd_getValue",
            "ERROR: Tool channel is empty", sentNothing);
        row("missing channel", "getValue", "DCmdGetValue", "d_cmd_getValue", "ERROR: Tool channel is empty",
            sentNothing);
        row("unlinked channel", "getValue channel=NOPE", "DCmdGetValue", "d_cmd_getValue",
            "ERROR: Tool channel:  \"NOPE\"  is not linked to device",
            "the command sent no device request; the tool has no channel \"NOPE\"");
        row("nothing to switch", "switchValue", "DCmdSwitchValue", "d_cmd_switchValue",
            "ERROR: Channel not managed", refused);
        row("input switched", "switchValue channel=RUNNING", "DCmdSwitchValue", "d_cmd_switchValue",
            "ERROR: Trying to write on an non output io", refused);
        row("input set", "setValue channel=RUNNING state=ON", "DCmdSetValue", "d_cmd_setValue",
            "ERROR: Trying to write on an non output io", refused);
        row("nothing to listen to", "startListening channel=", "DCmdListenEvents", "d_cmd_listenEvents",
            "ERROR: Channel not managed", refused);
    }

    void aRefusedOrderPrintsTheErrorReportAndEndsWithStatus1()
    {
        QFETCH(QString, words);
        QFETCH(QString, type);
        QFETCH(QString, source);
        QFETCH(QString, text);
        QFETCH(QString, reason);
        const QString command = words.section(QLatin1Char(' '), 0, 0);
        const BenchRun inShort = runOrder(words);
        QCOMPARE(inShort, (BenchRun{1, "", inShort.errors}));
        const QRegularExpression expectedInShort(
            "^%1:\\d+: %2\nappvantor: \\[1\\] %3 failed: %4\n$"_s.arg(source, text, command, reason));
        QVERIFY2(expectedInShort.match(QString::fromUtf8(inShort.errors)).hasMatch(),
                 inShort.errors.constData());
        const BenchRun run = runOrder(words, "--log-level debug"_words);
        const QRegularExpression expected(
            "^\n \"\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\" ;\t Thread = "
            "QThread\\(0x[0-9a-f]+\\) ;\t "
            "This = %1\\(0x[0-9a-f]+, name = \"%2\"\\) ;\t plugins/p_tool_gpio/source/%3 ;\t \\d+ ;\t %4\n"
            "appvantor: \\[1\\] %2 failed: %5\n$"_s.arg(type, command, source, text, reason));
        QVERIFY2(expected.match(QString::fromUtf8(run.errors)).hasMatch(), run.errors.constData());
    }

    void aFailedOrderIsAJsonLineWithItsKind_data()
    {
        const Rows<QByteArray, QString, QString, QString, int> row("device", "words", "reason", "results",
                                                                   "status");
        const char* notDone = R"({"doneOk":false})";
        const char* noValue = R"({"value":null})";
        row("refusedByCommand", "", "switchValue", "the command refused to run", notDone, 1);
        row("nothingSent", "", "setValue channel=A", "the command sent no device request", notDone, 1);
        row("stopped", "", "setValue channel=A state=PULSE duration=60000 --for 0.1",
            "stopped before it was complete", notDone, 1);
        row("replyRejected", R"(, "faults": [ {"kind": "wrong"} ])", "getValue channel=A", "reply rejected",
            noValue, 1);
        row("refusedByDevice", R"(, "faults": [ {"kind": "refused"} ])", "getValue channel=A",
            R"(the board refuses \"getValue\" of channel \"a\")", noValue, 1);
        row("timedOut", R"(, "faults": [ {"kind": "silent"} ])", "getValue channel=A",
            R"(no reply to \"getValue\" of channel \"a\" within 4000 ms)", noValue, 1);
        row("deviceUnreachable", R"(, "connected": false)", "getValue channel=A",
            "the simulated board is unplugged", noValue, 3);
    }

    /// The rows are called by the kinds.
    void aFailedOrderIsAJsonLineWithItsKind()
    {
        QFETCH(QByteArray, device);
        QFETCH(QString, words);
        QFETCH(QString, reason);
        QFETCH(QString, results);
        QFETCH(int, status);
        const QString file = boardFile(
            R"("lines": [ {"name": "a"} ])" + device,
            R"({"id": "A", "value": [ {"id": "direction", "value": "out"}, {"id": "link", "value": "a"} ]})");
        const BenchRun run = runOrder(words, {"--config"_s, file, "--json"_s});
        const QString begin = R"({"type":"failure","order":1,"tool":"T","command":"%1",)"_s;
        const QString end = R"(},"kind":"%1","reason":"%2","results":%3})"_s;
        QCOMPARE(run.lines().size(), 1);
        QVERIFY2(run.lines().first().startsWith(begin.arg(words.section(QLatin1Char(' '), 0, 0))),
                 run.output.constData());
        QVERIFY2(
            run.lines().first().endsWith(end.arg(QLatin1String(QTest::currentDataTag()), reason, results)),
            run.output.constData());
        QCOMPARE(run.status, status);
    }

    void aPriorityThatIsNotGrantedIsToldAndTheRunGoesOn()
    {
        QCOMPARE(runScript("ulimit -r 0; unprivileged \"$BENCH\" --realtime run getValue channel=ALARM"_s),
                 (BenchRun{0, "[1] getValue: value=1\n",
                           "appvantor: the system grants no real-time priority: Operation not permitted\n"}));
    }

    void countStopsAListeningOrderAfterThatManyEvents()
    {
        const BenchRun run = runOrder("startListening channel=BRIGHTNESS --count 5"_s,
                                      {"--config"_s, example("button_and_lamp.json"_s)});
        QCOMPARE(run, (BenchRun{0, run.output}));
        QCOMPARE(run.lines().size(), 6);
        QVERIFY2(run.lines().last().startsWith("[1] startListening: "_s), qPrintable(run.lines().last()));
    }

    /// The first reading is no edge, nor is any change in the other direction.
    void countCountsTheEdgesThatWereSeen()
    {
        const BenchRun run = runOrder("startListening channel=TEMPERATURE edge=RE --count 2"_s);
        QCOMPARE(run, (BenchRun{0, run.output}));
        QCOMPARE(run.lines().size(), 4);
        QCOMPARE(run.output.count("lastValue=32000 value=false\n"), 1);
        QCOMPARE(run.output.count("  lastValue=3"), 3);
        QCOMPARE(run.output.count(" value=true\n"), 3); // two edges, and the last one as the result
    }

    void forStopsAListeningOrder_data()
    {
        const Rows<QString> row("words");
        for (const char* words :
             {"listenToAll --for 0.2", "listenToAll --for 0", "startListening channel=DOOR edge=RE --for 0",
              "--realtime listenToAll --for 0"}) {
            row(words, words);
        }
    }

    void forStopsAListeningOrder()
    {
        QFETCH(QString, words);
        const BenchRun run = runOrder(words, "--log-level off"_words);
        QCOMPARE(run.status, 0);
        QVERIFY2(run.lines().size() <= 2, run.output.constData());
        QVERIFY2(run.output.contains("[1] "), run.output.constData());
    }

    void forKeepsTheBenchForAnOrderThatIsDone()
    {
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(runOrder("setValue channel=START state=ON --for 0.3"_s),
                 (BenchRun{0, "[1] setValue: doneOk=true\n"}));
        QVERIFY(clock.elapsed() >= 300);
    }

    void aSectionReachesInit_data()
    {
        const Rows<QString> row("section");
        row("a list", R"(channels=[{"id": "START", "direction": "out"}])");
        row("a text", "channels=x");
    }

    void aSectionReachesInit()
    {
        QFETCH(QString, section);
        QCOMPARE(runBench({"run"_s, "init"_s, section}), (BenchRun{0, "[1] init: doneOk=true\n"}));
    }

    void allBinaryLinesAreOneExactNumber()
    {
        QByteArray lines = R"({"name": "first", "level": 1})";
        for (int line = 1; line < 63; ++line) {
            lines += ", {\"name\": \"l" + QByteArray::number(line) + "\"}";
        }
        lines += R"(, {"name": "last", "level": 1})";
        const BenchRun run = runOrder("listenToAll --count 1 --json"_s,
                                      {"--config"_s, boardFile("\"lines\": [" + lines + "]")});
        QCOMPARE(run.status, 0);
        QVERIFY2(run.output.contains(
                     R"("results":{"value":9223372036854775809,"valueText":"9223372036854775809"}})"),
                 run.output.constData());
    }

    void extremeNumbersAreTaken_data()
    {
        const Rows<QString> row("arguments");
        for (const char* arguments :
             {"duration=2147483647 dutyCycle=2147483647", "duration=-2147483648 dutyCycle=2147483647",
              "duration=2147483647 dutyCycle=-2147483648", "duration=-2147483648 dutyCycle=-2147483648",
              "duration=0 dutyCycle=0", "value=65535 duration=65536 dutyCycle=100"}) {
            row(arguments, arguments);
        }
    }

    void extremeNumbersAreTaken()
    {
        QFETCH(QString, arguments);
        const BenchRun run = runOrder("setValue channel=START state=BLINK "_s + arguments);
        QCOMPARE(run, (BenchRun{0, "[1] setValue: doneOk=true\n", run.errors}));
    }

    void aPulseOfNegativeDurationFailsInsteadOfHanging()
    {
        QCOMPARE(runOrder("setValue channel=START state=PULSE duration=-1"_s),
                 (BenchRun{1, "",
                           "appvantor: [1] setValue failed: the command waits for nothing more, without "
                           "having reported doneOk\n"}));
    }

    void noProgressIsDrawnInAPipe()
    {
        QCOMPARE(runOrder("setValue channel=START state=PULSE duration=700"_s),
                 (BenchRun{0, "[1] setValue: doneOk=true\n"}));
    }
};

QTEST_GUILESS_MAIN(TestRun)
#include "test_run.moc"
