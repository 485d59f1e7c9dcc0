#include "bench_process.h"
#include "literals.h"
#include "narrow_pipe.h"
#include "rows.h"

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

} // namespace

/// Ctrl-C, and the other signals that ask a process to end.
class TestSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSignalEndsARunProperly_data()
    {
        const Rows<int, QString, QByteArray, QByteArray, int, QByteArray, QByteArray> rows(
            "number", "arguments", "input", "sign", "status", "end", "errors");
        const QString silent = "--config %1 "_s.arg(example("fault_injection.json"_s));
        for (const Signal& signal : c_endingSignals) {
            const auto row = [&](const char* name, const QString& arguments, const char* input,
                                 const char* sign, int status, const char* end, const char* errors) {
                rows(QByteArray(signal.name) + ": " + name, signal.number, arguments, input, sign, status,
                     end, errors);
            };
            row("listening", "run startListening channel=START edge=RE"_s, "", "value=false", 0,
                "[1] startListening: lastValue=0 value=false\n", "");
            row("blinking", "run setValue channel=START state=BLINK duration=20 dutyCycle=50 --for 1000"_s,
                "", "doneOk=true", 0, "[1] setValue: doneOk=true\n", "");
            row("pulse", "shell --echo"_s, "setValue channel=START state=PULSE duration=60000\n", "PULSE", 1,
                "duration=60000\n",
                "appvantor: <stdin>:1: [1] setValue failed: stopped before it was complete\n");
            row("waiting for the device", silent + "shell --echo"_s, "getValue channel=DEAD\n", "DEAD", 1,
                "DEAD\n", "appvantor: <stdin>:1: [1] getValue failed: stopped before it was complete\n");
            row("sleeping", "shell --echo"_s, "sleep 80000000\ngetValue channel=ALARM\n", "sleep", 0,
                "80000000\n", "");
            row("waiting for an order", "shell --echo"_s, "listenToAll\nwait 1\n", "> wait", 0,
                "\n[1] listenToAll: value=96\n", "");
            row("idle, with an order beside", "shell"_s, "listenToAll\n", "value=", 0,
                "\n[1] listenToAll: value=96\n", "");
            row("idle", "shell --echo"_s, "# nothing\n", "nothing", 0, "> # nothing\n", "");
        }
    }

    void aSignalEndsARunProperly()
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

    void aSecondSignalChangesNothing_data()
    {
        const Rows<int, int> row("first", "second");
        for (const Signal& first : c_endingSignals) {
            for (const Signal& second : c_endingSignals) {
                row(QByteArray(first.name) + ' ' + second.name, first.number, second.number);
            }
        }
    }

    /// Signals until the end: also those that come while the bench puts everything away.
    void aSecondSignalChangesNothing()
    {
        QFETCH(int, first);
        QFETCH(int, second);
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        BenchProcess bench(QStringList{"--trace"_s, trace} + "run listenToAll"_words);
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

    void aSignalClosesAWindowProperly_data()
    {
        const Rows<int, QString> row("number", "page");
        for (const Signal& signal : c_endingSignals) {
            for (const char* page : {"window", "panel"}) {
                row(QByteArray(signal.name) + ": " + page, signal.number, page);
            }
        }
    }

    void aSignalClosesAWindowProperly()
    {
        QFETCH(int, number);
        QFETCH(QString, page);
        const QString name = temporaryFile(QByteArray(), "vcd"_s);
        BenchProcess bench({"--trace"_s, name, page});
        QVERIFY(bench.waitUntilCaught(number));
        bench.send(number);
        QCOMPARE(bench.end().status, 0);
        QVERIFY2(isTraceComplete(name), contentOf(name).right(100).constData());
    }

    void aSignalEndsAListOfChannelsAtOnce_data()
    {
        const Rows<int> row("number");
        for (const Signal& signal : c_endingSignals) {
            row(signal.name, signal.number);
        }
    }

    /// The trace tells that the board is there: the channel that never answers is being read, or about to be.
    void aSignalEndsAListOfChannelsAtOnce()
    {
        QFETCH(int, number);
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        BenchProcess bench(
            {"--config"_s, example("fault_injection.json"_s), "--trace"_s, trace, "channels"_s});
        QTRY_VERIFY_WITH_TIMEOUT(QFile(trace).size() > 0, 20000);
        bench.send(number);
        bench.end();
        QCOMPARE(bench.process().exitStatus(), QProcess::CrashExit);
        QCOMPARE(bench.process().exitCode(), number);
    }

    void aSignalLeavesToASleepingReaderWhatIsQueued_data() { aSignalEndsAListOfChannelsAtOnce_data(); }

    void aSignalLeavesToASleepingReaderWhatIsQueued()
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
        QCOMPARE(run, (BenchRun{0, run.output}));
    }

    void aSignalEndsTheWaitForAReader_data() { aSignalEndsAListOfChannelsAtOnce_data(); }

    void aSignalEndsTheWaitForAReader()
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
    void theThreadOfTheDeviceHearsNoSignal()
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

    void anIgnoredHangUpIsNotHeard()
    {
        const BenchRun run = runScript("trap '' HUP\n"
                                       "\"$BENCH\" run startListening channel=TEMPERATURE >o & bench=$!\n"
                                       "until_caught $bench 15; kill -HUP $bench\n"
                                       "lines=$(wc -l <o)\n"
                                       "while [ \"$(wc -l <o)\" -eq $lines ]; do sleep 0.01; done\n"
                                       "kill -TERM $bench; wait $bench"_s);
        QCOMPARE(run, (BenchRun{0, run.output}));
    }

    void aClosedPipeElsewhereIsNotDiedOf()
    {
        BenchProcess bench("run startListening channel=START"_words);
        QVERIFY(bench.waitForOutput("value=0"));
        bench.send(SIGPIPE);
        bench.send(SIGINT);
        QCOMPARE(bench.end().status, 0);
    }

    void aRunGoesOnAfterAStop()
    {
        BenchProcess bench("shell"_words);
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
        QCOMPARE(run, (BenchRun{0, run.output}));
    }
};

QTEST_GUILESS_MAIN(TestSignals)
#include "test_signals.moc"
