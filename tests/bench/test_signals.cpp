#include "bench_process.h"
#include "narrow_pipe.h"

#include <QFile>
#include <QtTest>

#include <csignal>

namespace {

struct Signal
{
    const char* name;
    int number;
};
constexpr Signal c_endingSignals[] = {{"SIGINT", SIGINT}, {"SIGTERM", SIGTERM}, {"SIGHUP", SIGHUP}};

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

} // namespace

/// Ctrl-C, and the other signals that ask a process to end.
class TestSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSignalEndsARunProperly_data();
    void aSignalEndsARunProperly();
    void aSecondSignalChangesNothing_data();
    void aSecondSignalChangesNothing();
    void aSignalLeavesTheRestOfAScriptOut();
    void aSignalClosesAWindowProperly_data();
    void aSignalClosesAWindowProperly();
    void aSignalEndsAListOfChannelsAtOnce_data();
    void aSignalEndsAListOfChannelsAtOnce();
    void aSignalEndsAWaitForAReader_data();
    void aSignalEndsAWaitForAReader();
    void oneSignalEndsAWaitInTheMiddleOfALine_data();
    void oneSignalEndsAWaitInTheMiddleOfALine();
    void anIgnoredHangUpIsNotHeard();
    void aClosedPipeElsewhereIsNotDiedOf();
    void aRunGoesOnAfterAStop();
};

void TestSignals::aSignalEndsARunProperly_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("sign");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<QByteArray>("errors");
    const QString silent =
        QStringLiteral("--config %1 ").arg(example(QStringLiteral("fault_injection.json")));
    for (const Signal& signal : c_endingSignals) {
        const auto row = [&signal](const char* name, const QString& arguments, const char* input,
                                   const char* sign, int status, const char* end, const char* errors) {
            QTest::addRow("%s: %s", signal.name, name)
                << signal.number << arguments << QByteArray(input) << QByteArray(sign) << status
                << QByteArray(end) << QByteArray(errors);
        };
        row("listening", QStringLiteral("run startListening channel=START edge=RE"), "", "value=false", 0,
            "[1] startListening: lastValue=0 value=false\n", "");
        row("blinking",
            QStringLiteral("run setValue channel=START state=BLINK duration=20 dutyCycle=50 --for 1000"), "",
            "doneOk=true", 0, "[1] setValue: doneOk=true\n", "");
        row("pulse", QStringLiteral("shell --echo"), "setValue channel=START state=PULSE duration=60000\n",
            "PULSE", 1, "duration=60000\n",
            "appvantor: [1] setValue failed: stopped before it was complete\n");
        row("waiting for the device", silent + QStringLiteral("shell --echo"), "getValue channel=DEAD\n",
            "DEAD", 1, "DEAD\n", "appvantor: [1] getValue failed: stopped before it was complete\n");
        row("sleeping", QStringLiteral("shell --echo"), "sleep 80000000\n", "sleep", 0, "80000000\n", "");
        row("waiting for an order", QStringLiteral("shell --echo"), "listenToAll\nwait 1\n", "> wait", 0,
            "\n[1] listenToAll: value=96\n", "");
        row("idle, with an order beside", QStringLiteral("shell"), "listenToAll\n", "value=", 0,
            "\n[1] listenToAll: value=96\n", "");
        row("idle", QStringLiteral("shell --echo"), "# nothing\n", "nothing", 0, "> # nothing\n", "");
    }
}

void TestSignals::aSignalEndsARunProperly()
{
    QFETCH(int, number);
    QFETCH(QString, arguments);
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, sign);
    QFETCH(int, status);
    QFETCH(QByteArray, end);
    QFETCH(QByteArray, errors);
    BenchProcess bench(arguments.split(QLatin1Char(' ')));
    bench.process().write(input);
    QVERIFY(bench.waitForOutput(sign));
    bench.send(number);
    const BenchRun run = bench.end();
    QCOMPARE(run.status, status);
    QVERIFY2(run.output.endsWith(end), run.output.constData());
    QCOMPARE(run.errors, errors);
}

void TestSignals::aSecondSignalChangesNothing_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    for (const Signal& first : c_endingSignals) {
        for (const Signal& second : c_endingSignals) {
            QTest::addRow("%s %s", first.name, second.name) << first.number << second.number;
        }
    }
}

/// Signals until the end: also those that come while the bench puts everything away.
void TestSignals::aSecondSignalChangesNothing()
{
    QFETCH(int, first);
    QFETCH(int, second);
    const QString trace = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    BenchProcess bench(QStringList{QStringLiteral("--trace"), trace} + words("run listenToAll"));
    QVERIFY(bench.waitForOutput("value="));
    bench.send(first);
    while (bench.process().state() != QProcess::NotRunning) {
        bench.send(second);
        bench.process().waitForFinished(1);
    }
    const BenchRun run = bench.end();
    QCOMPARE(run.status, 0);
    QVERIFY(run.output.endsWith("\n[1] listenToAll: value=96\n"));
}

void TestSignals::aSignalLeavesTheRestOfAScriptOut()
{
    BenchProcess bench(words("shell --echo"));
    bench.process().write("sleep 80000000\ngetValue channel=ALARM\n");
    QVERIFY(bench.waitForOutput("> sleep"));
    bench.send(SIGINT);
    const BenchRun run = bench.end();
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QByteArray("> sleep 80000000\n"));
}

void TestSignals::aSignalClosesAWindowProperly_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("page");
    for (const Signal& signal : c_endingSignals) {
        for (const char* page : {"window", "panel"}) {
            QTest::addRow("%s: %s", signal.name, page) << signal.number << QString::fromLatin1(page);
        }
    }
}

void TestSignals::aSignalClosesAWindowProperly()
{
    QFETCH(int, number);
    QFETCH(QString, page);
    const QString name = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    BenchProcess bench({QStringLiteral("--trace"), name, page});
    QVERIFY(bench.waitUntilCaught(number));
    bench.send(number);
    QCOMPARE(bench.end().status, 0);
    QFile trace(name);
    QVERIFY(trace.open(QIODevice::ReadOnly));
    const QByteArray text = trace.readAll();
    QVERIFY2(text.mid(text.lastIndexOf('#')).count('\n') == 1, text.right(100).constData());
}

void TestSignals::aSignalEndsAListOfChannelsAtOnce_data()
{
    QTest::addColumn<int>("number");
    for (const Signal& signal : c_endingSignals) {
        QTest::newRow(signal.name) << signal.number;
    }
}

/// The trace tells that the board is there: the channel that never answers is being read, or about to be.
void TestSignals::aSignalEndsAListOfChannelsAtOnce()
{
    QFETCH(int, number);
    const QString trace = temporaryFile(QByteArray(), QStringLiteral("vcd"));
    BenchProcess bench({QStringLiteral("--config"), example(QStringLiteral("fault_injection.json")),
                        QStringLiteral("--trace"), trace, QStringLiteral("channels")});
    QTRY_VERIFY_WITH_TIMEOUT(QFile(trace).size() > 0, 20000);
    bench.send(number);
    bench.end();
    QCOMPARE(bench.process().exitStatus(), QProcess::CrashExit);
    QCOMPARE(bench.process().exitCode(), number);
}

void TestSignals::aSignalEndsAWaitForAReader_data()
{
    QTest::addColumn<int>("number");
    for (const Signal& signal : c_endingSignals) {
        QTest::newRow(signal.name) << signal.number;
    }
}

/// Output to a pipe that is full, and that nobody reads.
void TestSignals::aSignalEndsAWaitForAReader()
{
    QFETCH(int, number);
    const BenchRun run =
        runScript(QStringLiteral("mkfifo o; exec 4<>o; dd if=/dev/zero of=o oflag=nonblock bs=4096 2>&-\n"
                                 "\"$BENCH\" run startListening channel=START >&4 & bench=$!\n"
                                 "until_caught $bench %1\n"
                                 "while kill -%1 $bench 2>&-; do sleep 0.05; done\n"
                                 "wait $bench")
                      .arg(number));
    QCOMPARE(run.errors,
             QByteArray("appvantor: standard output cannot be written: Interrupted system call\n"));
    QCOMPARE(run.status, 1);
}

void TestSignals::oneSignalEndsAWaitInTheMiddleOfALine_data()
{
    aSignalEndsAWaitForAReader_data();
}

void TestSignals::oneSignalEndsAWaitInTheMiddleOfALine()
{
    QFETCH(int, number);
    const NarrowPipe pipe;
    BenchChild bench;
    bench.setStandardOutputFile(pipe.file());
    bench.start(benchFile(), {QStringLiteral("shell"), QStringLiteral("--echo")});
    bench.write("getValue channel=" + QByteArray(9000, 'x') + '\n');
    QTRY_VERIFY_WITH_TIMEOUT(pipe.isFull(), 20000);
    kill(static_cast<pid_t>(bench.processId()), number);
    QVERIFY(bench.waitForFinished(20000));
    QVERIFY2(bench.readAllStandardError().contains(
                 "appvantor: standard output cannot be written: Interrupted system call\n"),
             bench.readAllStandardError().constData());
    QCOMPARE(bench.exitCode(), 1);
}

void TestSignals::anIgnoredHangUpIsNotHeard()
{
    const BenchRun run =
        runScript(QStringLiteral("trap '' HUP\n"
                                 "\"$BENCH\" run startListening channel=TEMPERATURE >o & bench=$!\n"
                                 "until_caught $bench 15; kill -HUP $bench\n"
                                 "lines=$(wc -l <o)\n"
                                 "while [ \"$(wc -l <o)\" -eq $lines ]; do sleep 0.01; done\n"
                                 "kill -TERM $bench; wait $bench"));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
}

void TestSignals::aClosedPipeElsewhereIsNotDiedOf()
{
    BenchProcess bench(words("run startListening channel=START"));
    QVERIFY(bench.waitForOutput("value=0"));
    bench.send(SIGPIPE);
    bench.send(SIGINT);
    QCOMPARE(bench.end().status, 0);
}

void TestSignals::aRunGoesOnAfterAStop()
{
    BenchProcess bench(words("shell"));
    bench.process().write("setValue channel=START state=PULSE duration=100 &\nlistenToAll\n");
    QVERIFY(bench.waitForOutput("  value="));
    bench.send(SIGSTOP);
    QVERIFY(bench.waitUntilStopped());
    bench.process().write("wait 1\ngetValue channel=START\n");
    bench.send(SIGCONT);
    QVERIFY(bench.waitForOutput("[1] setValue: doneOk=true\n"));
    QVERIFY(bench.waitForOutput("[3] getValue: value=0\n"));
    bench.send(SIGTERM);
    const BenchRun run = bench.end();
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors, QByteArray());
}

QTEST_GUILESS_MAIN(TestSignals)
#include "test_signals.moc"
