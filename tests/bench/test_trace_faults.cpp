#include "bench_process.h"
#include "literals.h"
#include "narrow_pipe.h"
#include "rows.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <unistd.h>

namespace {

const char* const c_fastBlink = "run setValue channel=DOOR state=BLINK duration=2 dutyCycle=50 --for 1000";

QStringList tracedTo(const QString& file, const char* words)
{
    return QStringList{"--trace"_s, file} + QString::fromLatin1(words).split(QLatin1Char(' '));
}

QString boardWithLine(const QString& name)
{
    return boardFile(R"("lines": [ {"name": ")" + name.toUtf8() + R"("} ])");
}

} // namespace

/// The option --trace, where the file cannot be written.
class TestTraceFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTraceThatCannotBeBegunIsToldAndNothingIsDone_data()
    {
        const Rows<QString, QString, QByteArray, QString> rows("preparation", "file", "message", "words");
        const auto row = [&](const QByteArray& name, const char* preparation, const char* file,
                             const char* message) {
            for (const char* words : {"run getValue channel=START", "shell", "channels",
                                      "window --screenshot p.png", "panel --screenshot p.png"}) {
                rows(name + ": " + words, preparation, file, message, words);
            }
        };
        row("a folder", "mkdir t", "t", "the trace cannot be written: Is a directory");
        row("a file that is read-only", "echo old >t; chmod 400 t", "t",
            "the trace cannot be written: Permission denied");
        row("a folder that is read-only", "mkdir d; chmod 500 d", "d/t",
            "the trace cannot be written: Permission denied");
        row("a pipe that nobody reads", "mkfifo t", "t",
            "the trace cannot be written: nobody reads this pipe");
        row("a full device", "", "/dev/full", "the trace ends here: No space left on device");
        row("a full disk", "ulimit -f 0", "t", "the trace ends here: File too large");
    }

    void aTraceThatCannotBeBegunIsToldAndNothingIsDone()
    {
        QFETCH(QString, preparation);
        QFETCH(QString, file);
        QFETCH(QByteArray, message);
        QFETCH(QString, words);
        const BenchRun run = runScript(
            preparation +
            "\n{ unprivileged \"$BENCH\" --trace %1 %2\necho $?; } <<< 'getValue channel=START' | cat;"
            "ls p.png 2>&-"_s.arg(file, words));
        QCOMPARE(run.output, QByteArray("2\n"));
        const QByteArray expected = "appvantor: " + file.toUtf8() + ": " + message + '\n';
        QVERIFY2(run.errors.endsWith(expected) && run.errors.count("appvantor: ") == 1,
                 run.errors.constData());
    }

    void aTraceThatEndsMeanwhileIsToldOnceAndFailsTheRun_data()
    {
        const Rows<QString, QByteArray, QByteArray> row("script", "output", "message");
        const QByteArray lost = "the trace is lost: the file was removed meanwhile";
        const QByteArray ends = "the trace ends here: Broken pipe";
        row("removed",
            "{ until [ -s t ]; do sleep 0.01; done; rm t; echo 'getValue channel=START'; } |\n\"$BENCH\" "
            "--trace t shell",
            "[1] getValue: value=0\n", lost);
        row("disk full",
            "ulimit -f 2\n\"$BENCH\" --trace t run setValue channel=DOOR state=BLINK duration=2 dutyCycle=50 "
            "--for 1",
            "[1] setValue: doneOk=true\n", "the trace ends here: File too large");
        // The reader is there before the trace is begun, and goes with what it has read.
        const QString readerGoes = "mkfifo t; exec 3<>t 4<t 5>t 3>&-; head -c 10 <&4 >head & exec 4<&-\n"_s;
        row("reader gone", readerGoes + "\"$BENCH\" --trace t run getValue channel=START --for 1"_s,
            "[1] getValue: value=0\n", ends);
        row("reader gone with the window",
            readerGoes + "\"$BENCH\" --trace t panel --screenshot p.png --for 1\n"
                         "status=$?; ls p.png; exit $status"_s,
            "p.png\n", ends);
        row("reader gone with a shell",
            readerGoes + "\"$BENCH\" --trace t shell <<< $'sleep 1000\\ngetValue channel=START'"_s,
            "[1] getValue: value=0\n", ends);
    }

    void aTraceThatEndsMeanwhileIsToldOnceAndFailsTheRun()
    {
        QFETCH(QString, script);
        QFETCH(QByteArray, output);
        QFETCH(QByteArray, message);
        const BenchRun run = runScript(script);
        QCOMPARE(run, (BenchRun{1, output, run.errors}));
        QVERIFY2(run.errors.endsWith("appvantor: t: " + message + '\n') &&
                     run.errors.count("appvantor: ") == 1,
                 run.errors.constData());
    }

    /// The head of the trace fills the one block that the file may have; the time of the end does not fit in.
    void aDiskThatIsFullAtTheLastWriteFailsTheRun()
    {
        constexpr int block = 1024;
        const auto traceOf = [](const QString& line, const char* limit) {
            return runScript(
                "ulimit -f %1; \"$BENCH\" --trace t --config \"%2\" shell; status=$?; cat t; exit $status"_s
                    .arg(QLatin1String(limit), boardWithLine(line)));
        };
        const QString name = "a"_s;
        const int head = traceOf(name, "unlimited").output.lastIndexOf('#');
        const BenchRun run = traceOf(name.repeated(1 + block - head), "1");
        QCOMPARE(run.output.size(), block);
        QVERIFY(run.output.endsWith("$end\n"));
        QCOMPARE(run, (BenchRun{1, run.output, "appvantor: t: the trace ends here: File too large\n"}));
    }

    void aTraceIsWrittenToAPipe()
    {
        const BenchRun run = runScript("mkfifo t; exec 3<>t 4<t 3>&-\n"
                                       "\"$BENCH\" --trace t run switchValue channel=START >order\n"
                                       "status=$?; cat <&4; exit $status"_s);
        QCOMPARE(run, (BenchRun{0, run.output}));
        QVERIFY(run.output.startsWith("$date "));
        QVERIFY(run.output.contains("\n1!\n"));
    }

    void aReaderThatIsBusyMissesNothing()
    {
        NarrowPipe pipe;
        BenchProcess bench(tracedTo(pipe.file(), c_fastBlink));
        QByteArray trace;
        const auto goesOn = [&] {
            trace += pipe.read();
            return trace.size() > 10000;
        };
        QTRY_VERIFY_WITH_TIMEOUT(goesOn(), 20000);
        bench.send(SIGINT);
        trace += pipe.readUntilEnd(&bench);
        const BenchRun run = bench.end();
        QCOMPARE(run, (BenchRun{0, run.output}));
        QVERIFY(trace.mid(trace.lastIndexOf('#')).endsWith('\n'));
        QVERIFY(!trace.contains("$dumpoff"));
    }

    /// The head of the trace alone is more than the pipe holds.
    void aReaderThatSleepsHoldsNothingUp()
    {
        NarrowPipe pipe;
        BenchProcess bench(
            {"--trace"_s, pipe.file(), "--config"_s, boardWithLine("a"_s.repeated(9000)), "shell"_s});
        bench.process().write("listenToAll\nsleep 50\nstop 1\n");
        QVERIFY(bench.waitForOutput("[1] listenToAll: value=0\n"));
        QVERIFY(pipe.isFull());
        bench.process().closeWriteChannel();
        QVERIFY(pipe.readUntilEnd(&bench).contains("\n$dumpvars\n0!\n$end\n#"));
        QCOMPARE(bench.end().status, 0);
    }

    void outputAndTraceMayBeReadOneAfterTheOther_data()
    {
        const Rows<bool> row("outputFirst");
        row("output first", true);
        row("trace first", false);
    }

    /// Each to its end, and each more than its pipe holds.
    void outputAndTraceMayBeReadOneAfterTheOther()
    {
        QFETCH(bool, outputFirst);
        NarrowPipe output;
        NarrowPipe trace;
        BenchProcess bench({"--trace"_s, trace.file(), "--config"_s, boardWithLine("a"_s.repeated(9000)),
                            "shell"_s, "--echo"_s},
                           output.file());
        bench.process().write("# " + QByteArray(9000, 'x') + '\n');
        bench.process().closeWriteChannel();
        for (NarrowPipe* pipe : {outputFirst ? &output : &trace, outputFirst ? &trace : &output}) {
            QByteArray text;
            const auto isReadOut = [&] {
                const bool isClosed = pipe->isClosed();
                text += pipe->read();
                return isClosed;
            };
            QTRY_VERIFY_WITH_TIMEOUT(isReadOut(), 20000);
            QVERIFY(text.size() > 9000);
        }
        QCOMPARE(bench.end(), BenchRun{0});
    }
};

QTEST_GUILESS_MAIN(TestTraceFaults)
#include "test_trace_faults.moc"
