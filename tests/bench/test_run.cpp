#include "bench_process.h"
#include "literals.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QtTest>

namespace {

BenchRun runOrder(const QString& words, const QStringList& options = {})
{
    return runBench(options + QStringList{"run"_s} + words.split(QLatin1Char(' ')));
}

const QString& errorReport()
{
    static const QString pattern =
        "^\n \"\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\" ;\t Thread = QThread\\(0x[0-9a-f]+\\) "
        ";\t "
        "This = %1\\(0x[0-9a-f]+, name = \"%2\"\\) ;\t plugins/p_tool_gpio/source/%3 ;\t \\d+ ;\t %4\n"_s;
    return pattern;
}

} // namespace

/// The subcommand "run".
class TestRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void getValuePrintsANumber();
    void getValueIsPrintedForPeople();
    void aRefusedOrderPrintsTheErrorReportAndEndsWithStatus1_data();
    void aRefusedOrderPrintsTheErrorReportAndEndsWithStatus1();
    void aFailedOrderIsAJsonLineWithItsKind_data();
    void aFailedOrderIsAJsonLineWithItsKind();
    void aPriorityThatIsNotGrantedIsToldAndTheRunGoesOn();
    void countStopsAListeningOrderAfterThatManyEvents();
    void forStopsAListeningOrder();
    void forKeepsTheBenchForAnOrderThatIsDone();
    void aSectionReachesInit_data();
    void aSectionReachesInit();
    void allBinaryLinesAreOneExactNumber();
    void extremeNumbersAreTaken_data();
    void extremeNumbersAreTaken();
    void aPulseOfNegativeDurationFailsInsteadOfHanging();
    void noProgressIsDrawnInAPipe();
};

void TestRun::getValuePrintsANumber()
{
    const BenchRun run = runOrder("getValue channel=ALARM"_s, {"--json"_s});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QByteArray(R"({"order":1,"command":"getValue","success":true,"results":{"value":1}})"
                                    "\n"));
    QCOMPARE(run.errors, QByteArray());
}

void TestRun::getValueIsPrintedForPeople()
{
    QCOMPARE(runOrder("getValue channel=ALARM"_s).output, QByteArray("[1] getValue: value=1\n"));
}

void TestRun::aRefusedOrderPrintsTheErrorReportAndEndsWithStatus1_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("report");
    QTest::addColumn<QByteArray>("reason");
    const auto row = [](const char* name, const char* words, const char* type, const char* source,
                        const char* text, const char* reason) {
        const QString command = QString::fromLatin1(words).section(QLatin1Char(' '), 0, 0);
        QTest::newRow(name) << QString::fromLatin1(words)
                            << errorReport().arg(QLatin1String(type), command, QLatin1String(source),
                                                 QLatin1String(text))
                            << QByteArray(reason);
    };
    const char* sentNothing = "the command sent no device request";
    const char* refused = "the command refused to run";
    row("empty channel", "getValue channel=", "DCmdGetValue", "d_cmd_getValue",
        "ERROR: Tool channel is empty", sentNothing);
    row("missing channel", "getValue", "DCmdGetValue", "d_cmd_getValue", "ERROR: Tool channel is empty",
        sentNothing);
    row("unlinked channel", "getValue channel=NOPE", "DCmdGetValue", "d_cmd_getValue",
        "ERROR: Tool channel:  \"NOPE\"  is not linked to device", sentNothing);
    row("nothing to switch", "switchValue", "DCmdSwitchValue", "d_cmd_switchValue",
        "ERROR: Channel not managed", refused);
    row("input switched", "switchValue channel=RUNNING", "DCmdSwitchValue", "d_cmd_switchValue",
        "ERROR: Trying to write on an non output io", refused);
    row("input set", "setValue channel=RUNNING state=ON", "DCmdSetValue", "d_cmd_setValue",
        "ERROR: Trying to write on an non output io", refused);
    row("nothing to listen to", "startListening channel=", "DCmdListenEvents", "d_cmd_listenEvents",
        "ERROR: Channel not managed", refused);
}

void TestRun::aRefusedOrderPrintsTheErrorReportAndEndsWithStatus1()
{
    QFETCH(QString, words);
    QFETCH(QString, report);
    QFETCH(QByteArray, reason);
    const BenchRun run = runOrder(words);
    QCOMPARE(run.status, 1);
    QCOMPARE(run.output, QByteArray());
    const QByteArray end =
        "appvantor: [1] " + words.section(QLatin1Char(' '), 0, 0).toUtf8() + " failed: " + reason + "\n";
    const QRegularExpression expected(report + QRegularExpression::escape(QString::fromUtf8(end)) + "$"_s);
    QVERIFY2(expected.match(QString::fromUtf8(run.errors)).hasMatch(), run.errors.constData());
}

void TestRun::aFailedOrderIsAJsonLineWithItsKind_data()
{
    QTest::addColumn<QByteArray>("device");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QByteArray>("failure");
    QTest::addColumn<int>("status");
    const auto row = [](const char* device, const char* words, const char* kind, const char* reason,
                        const char* results, int status) {
        const QByteArray command = QByteArray(words).split(' ').first();
        QTest::newRow(kind) << QByteArray(device) << QString::fromLatin1(words)
                            << R"({"order":1,"command":")" + command + R"(","success":false,"kind":")" +
                                   kind + R"(","reason":")" + reason + R"(","results":)" + results + "}\n"
                            << status;
    };
    const char* notDone = R"({"doneOk":false})";
    const char* noValue = R"({"value":null})";
    row("", "switchValue", "refusedByCommand", "the command refused to run", notDone, 1);
    row("", "setValue channel=A", "nothingSent", "the command sent no device request", notDone, 1);
    row("", "setValue channel=A state=PULSE duration=60000 --for 0.1", "stopped",
        "stopped before it was complete", notDone, 1);
    row(R"(, "faults": [ {"kind": "wrong"} ])", "getValue channel=A", "replyRejected", "reply rejected",
        noValue, 1);
    row(R"(, "faults": [ {"kind": "refused"} ])", "getValue channel=A", "refusedByDevice",
        R"(the board refuses \"getValue\" of channel \"a\")", noValue, 1);
    row(R"(, "faults": [ {"kind": "silent"} ])", "getValue channel=A", "timedOut",
        R"(no reply to \"getValue\" of channel \"a\" within 4000 ms)", noValue, 1);
    row(R"(, "connected": false)", "getValue channel=A", "deviceUnreachable",
        "the simulated board is unplugged", noValue, 3);
}

void TestRun::aFailedOrderIsAJsonLineWithItsKind()
{
    QFETCH(QByteArray, device);
    QFETCH(QString, words);
    QFETCH(QByteArray, failure);
    QFETCH(int, status);
    const QString file =
        temporaryFile(R"({"device": {"type": "simulated", "lines": [ {"name": "a"} ])" + device +
                      R"(}, "tools": [ {"name": "T", "plugin": "p_tool_gpio",
      "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}",
      "channels": [ {"id": "A", "value": [ {"id": "direction", "value": "out"}, {"id": "link", "value": "a"} ]}
      ]} ] })");
    const BenchRun run = runOrder(words, {"--config"_s, file, "--json"_s});
    QCOMPARE(run.output, failure);
    QCOMPARE(run.status, status);
}

void TestRun::aPriorityThatIsNotGrantedIsToldAndTheRunGoesOn()
{
    const BenchRun run =
        runScript("ulimit -r 0; unprivileged \"$BENCH\" --realtime run getValue channel=ALARM"_s);
    QCOMPARE(run.output, QByteArray("[1] getValue: value=1\n"));
    QCOMPARE(run.errors,
             QByteArray("appvantor: the system grants no real-time priority: Operation not permitted\n"));
    QCOMPARE(run.status, 0);
}

void TestRun::countStopsAListeningOrderAfterThatManyEvents()
{
    const BenchRun run = runOrder("startListening channel=BRIGHTNESS edge=RE --count 5 --json"_s,
                                  {"--config"_s, example("button_and_lamp.json"_s)});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output.count("\"event\""), 5);
    QCOMPARE(run.json().size(), 6);
    QVERIFY(run.json().last().value(QLatin1String("success")).toBool());
}

void TestRun::forStopsAListeningOrder()
{
    const BenchRun run = runOrder("listenToAll --for 0.2 --json"_s);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output.count("\"event\""), 1);
}

void TestRun::forKeepsTheBenchForAnOrderThatIsDone()
{
    QElapsedTimer clock;
    clock.start();
    const BenchRun run = runOrder("setValue channel=START state=ON --for 0.3"_s);
    QVERIFY(clock.elapsed() >= 300);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QByteArray("[1] setValue: doneOk=true\n"));
}

void TestRun::aSectionReachesInit_data()
{
    QTest::addColumn<QString>("section");
    QTest::newRow("a list") << R"(channels=[{"id": "START", "direction": "out"}])"_s;
    QTest::newRow("a text") << "channels=x"_s;
}

void TestRun::aSectionReachesInit()
{
    QFETCH(QString, section);
    const BenchRun run = runBench({"run"_s, "init"_s, section});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QByteArray("[1] init: doneOk=true\n"));
}

void TestRun::allBinaryLinesAreOneExactNumber()
{
    QByteArray lines;
    for (int line = 0; line < 64; ++line) {
        lines += QByteArray(line > 0 ? "," : "") + R"({"name": "l)" + QByteArray::number(line) +
                 R"(", "level": )" + (line == 0 || line == 63 ? "1" : "0") + "}";
    }
    const QString file = temporaryFile(R"({"device": {"type": "simulated", "lines": [)" + lines + R"(]},
      "tools": [ {"name": "T", "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio"} ] })");
    const BenchRun run = runOrder("listenToAll --count 1 --json"_s, {"--config"_s, file});
    QCOMPARE(run.status, 0);
    QVERIFY2(run.output.contains(R"("event":{"value":9223372036854775809}})"), run.output.constData());
}

void TestRun::extremeNumbersAreTaken_data()
{
    QTest::addColumn<QString>("arguments");
    for (const char* arguments :
         {"duration=2147483647 dutyCycle=2147483647", "duration=-2147483648 dutyCycle=2147483647",
          "duration=2147483647 dutyCycle=-2147483648", "duration=-2147483648 dutyCycle=-2147483648",
          "duration=0 dutyCycle=0", "value=65535 duration=65536 dutyCycle=100"}) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
    }
}

void TestRun::extremeNumbersAreTaken()
{
    QFETCH(QString, arguments);
    const BenchRun run = runOrder("setValue channel=START state=BLINK "_s + arguments);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
}

void TestRun::aPulseOfNegativeDurationFailsInsteadOfHanging()
{
    const BenchRun run = runOrder("setValue channel=START state=PULSE duration=-1"_s);
    QCOMPARE(run.status, 1);
    QVERIFY2(run.errors.contains(
                 "setValue failed: the command waits for nothing more, without having reported doneOk"),
             run.errors.constData());
}

void TestRun::noProgressIsDrawnInAPipe()
{
    const BenchRun run = runOrder("setValue channel=START state=PULSE duration=700"_s);
    QCOMPARE(run.output, QByteArray("[1] setValue: doneOk=true\n"));
    QCOMPARE(run.errors, QByteArray());
}

QTEST_GUILESS_MAIN(TestRun)
#include "test_run.moc"
