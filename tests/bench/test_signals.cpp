#include "bench_process.h"
#include "literals.h"
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
    void aSignalLeavesToASleepingReaderWhatIsQueued_data();
    void aSignalLeavesToASleepingReaderWhatIsQueued();
    void aSignalEndsTheWaitForAReader_data();
    void aSignalEndsTheWaitForAReader();
    void theThreadOfTheDeviceHearsNoSignal();
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
    const QString silent = "--config %1 "_s.arg(example("fault_injection.json"_s));
    for (const Signal& signal : c_endingSignals) {
        const auto row = [&signal](const char* name, const QString& arguments, const char* input,
                                   const char* sign, int status, const char* end, const char* errors) {
            QTest::addRow("%s: %s", signal.name, name)
                << signal.number << arguments << QByteArray(input) << QByteArray(sign) << status
                << QByteArray(end) << QByteArray(errors);
        };
        row("listening", "run startListening channel=START edge=RE"_s, "", "value=false", 0,
            "[1] startListening: lastValue=0 value=false\n", "");
        row("blinking", "run setValue channel=START state=BLINK duration=20 dutyCycle=50 --for 1000"_s, "",
            "doneOk=true", 0, "[1] setValue: doneOk=true\n", "");
        row("pulse", "shell --echo"_s, "setValue channel=START state=PULSE duration=60000\n", "PULSE", 1,
            "duration=60000\n", "appvantor: [1] setValue failed: stopped before it was complete\n");
        row("waiting for the device", silent + "shell --echo"_s, "getValue channel=DEAD\n", "DEAD", 1,
            "DEAD\n", "appvantor: [1] getValue failed: stopped before it was complete\n");
        row("sleeping", "shell --echo"_s, "sleep 80000000\n", "sleep", 0, "80000000\n", "");
        row("waiting for an order", "shell --echo"_s, "listenToAll\nwait 1\n", "> wait", 0,
            "\n[1] listenToAll: value=96\n", "");
        row("idle, with an order beside", "shell"_s, "listenToAll\n", "value=", 0,
            "\n[1] listenToAll: value=96\n", "");
        row("idle", "shell --echo"_s, "# nothing\n", "nothing", 0, "> # nothing\n", "");
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
    const QString trace = temporaryFile(QByteArray(), "vcd"_s);
    BenchProcess bench(QStringList{"--trace"_s, trace} + words("run listenToAll"));
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
    const QString name = temporaryFile(QByteArray(), "vcd"_s);
    BenchProcess bench({"--trace"_s, name, page});
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
    const QString trace = temporaryFile(QByteArray(), "vcd"_s);
    BenchProcess bench({"--config"_s, example("fault_injection.json"_s), "--trace"_s, trace, "channels"_s});
    QTRY_VERIFY_WITH_TIMEOUT(QFile(trace).size() > 0, 20000);
    bench.send(number);
    bench.end();
    QCOMPARE(bench.process().exitStatus(), QProcess::CrashExit);
    QCOMPARE(bench.process().exitCode(), number);
}

void TestSignals::aSignalLeavesToASleepingReaderWhatIsQueued_data()
{
    aSignalEndsAListOfChannelsAtOnce_data();
}

void TestSignals::aSignalLeavesToASleepingReaderWhatIsQueued()
{
    QFETCH(int, number);
    NarrowPipe pipe;
    const QString trace = temporaryFile(QByteArray(), "vcd"_s);
    BenchProcess bench({"--trace"_s, trace, "shell"_s, "--echo"_s}, pipe.file());
    bench.process().write("# " + QByteArray(9000, 'x') + "\nlistenToAll\n");
    QTRY_VERIFY_WITH_TIMEOUT(pipe.isFull(), 20000);
    bench.send(number);
    QTRY_VERIFY_WITH_TIMEOUT(isTraceComplete(trace), 20000);
    const QByteArray output = pipe.readUntilEnd(&bench);
    QVERIFY2(output.endsWith("\n[1] listenToAll: value=96\n"), output.right(80).constData());
    const BenchRun run = bench.end();
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
}

void TestSignals::aSignalEndsTheWaitForAReader_data()
{
    aSignalEndsAListOfChannelsAtOnce_data();
}

void TestSignals::aSignalEndsTheWaitForAReader()
{
    QFETCH(int, number);
    const NarrowPipe pipe;
    const QString trace = temporaryFile(QByteArray(), "vcd"_s);
    BenchProcess bench({"--trace"_s, trace, "shell"_s, "--echo"_s}, pipe.file());
    bench.process().write("# " + QByteArray(9000, 'x') + '\n');
    bench.process().closeWriteChannel();
    QTRY_VERIFY_WITH_TIMEOUT(isTraceComplete(trace), 20000);
    bench.send(number);
    const BenchRun run = bench.end();
    QCOMPARE(run.errors,
             QByteArray("appvantor: standard output cannot be written: Interrupted system call\n"));
    QCOMPARE(run.status, 1);
}

/// Handlers of libraries run in any thread that hears the signal, and expect the main one.
void TestSignals::theThreadOfTheDeviceHearsNoSignal()
{
    const BenchRun run =
        runScript("\"$BENCH\" --realtime run listenToAll >o 2>e & until_caught $! 15\n"
                  "until thread=$(grep -lx device /proc/$!/task/*/comm); do sleep 0.01; done\n"
                  "sed -n 's/^SigBlk:\\t//p' \"${thread%comm}status\"; kill $!; wait $!"_s);
    const quint64 blocked = run.output.trimmed().toULongLong(nullptr, 16);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGWINCH, SIGCONT, SIGALRM}) {
        QVERIFY2((blocked >> (number - 1) & 1) != 0, run.output.constData());
    }
    QCOMPARE(run.status, 0);
}

void TestSignals::anIgnoredHangUpIsNotHeard()
{
    const BenchRun run = runScript("trap '' HUP\n"
                                   "\"$BENCH\" run startListening channel=TEMPERATURE >o & bench=$!\n"
                                   "until_caught $bench 15; kill -HUP $bench\n"
                                   "lines=$(wc -l <o)\n"
                                   "while [ \"$(wc -l <o)\" -eq $lines ]; do sleep 0.01; done\n"
                                   "kill -TERM $bench; wait $bench"_s);
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
