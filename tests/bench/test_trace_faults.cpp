#include "bench_process.h"
#include "literals.h"
#include "narrow_pipe.h"

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
    void aTraceThatCannotBeBegunIsToldAndNothingIsDone_data();
    void aTraceThatCannotBeBegunIsToldAndNothingIsDone();
    void aTraceThatEndsMeanwhileIsToldOnceAndFailsTheRun_data();
    void aTraceThatEndsMeanwhileIsToldOnceAndFailsTheRun();
    void aDiskThatIsFullAtTheLastWriteFailsTheRun();
    void aTraceIsWrittenToAPipe();
    void aReaderThatIsBusyMissesNothing();
    void aReaderThatSleepsHoldsNothingUp();
};

void TestTraceFaults::aTraceThatCannotBeBegunIsToldAndNothingIsDone_data()
{
    QTest::addColumn<QString>("preparation");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* name, const char* preparation, const char* file, const char* message) {
        for (const char* words : {"run getValue channel=START", "shell", "channels",
                                  "window --screenshot p.png", "panel --screenshot p.png"}) {
            QTest::addRow("%s: %s", name, words)
                << QString::fromLatin1(preparation) << QString::fromLatin1(file) << QByteArray(message)
                << QString::fromLatin1(words);
        }
    };
    row("a folder", "mkdir t", "t", "the trace cannot be written: Is a directory");
    row("a file that is read-only", "echo old >t; chmod 400 t", "t",
        "the trace cannot be written: Permission denied");
    row("a folder that is read-only", "mkdir d; chmod 500 d", "d/t",
        "the trace cannot be written: Permission denied");
    row("a pipe that nobody reads", "mkfifo t", "t", "the trace cannot be written: nobody reads this pipe");
    row("a full device", "", "/dev/full", "the trace ends here: No space left on device");
    row("a full disk", "ulimit -f 0", "t", "the trace ends here: File too large");
}

void TestTraceFaults::aTraceThatCannotBeBegunIsToldAndNothingIsDone()
{
    QFETCH(QString, preparation);
    QFETCH(QString, file);
    QFETCH(QByteArray, message);
    QFETCH(QString, words);
    const BenchRun run =
        runScript(preparation + "\n{ unprivileged \"$BENCH\" --trace %1 %2\necho $?; } <<< "
                                "'getValue channel=START' | cat; ls p.png 2>&-"_s.arg(file, words));
    QCOMPARE(run.output, QByteArray("2\n"));
    const QByteArray expected = "appvantor: " + file.toUtf8() + ": " + message + '\n';
    QVERIFY2(run.errors.endsWith(expected) && run.errors.count("appvantor: ") == 1, run.errors.constData());
}

void TestTraceFaults::aTraceThatEndsMeanwhileIsToldOnceAndFailsTheRun_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("message");
    const QByteArray lost = "the trace is lost: the file was removed meanwhile";
    const QByteArray ends = "the trace ends here: Broken pipe";
    QTest::newRow("removed")
        << "{ until [ -s t ]; do sleep 0.01; done; rm t; echo 'getValue channel=START'; } |\n"
           "\"$BENCH\" --trace t shell"_s
        << QByteArray("[1] getValue: value=0\n") << lost;
    QTest::newRow("disk full") << "ulimit -f 2\n\"$BENCH\" --trace t run setValue channel=DOOR state=BLINK "
                                  "duration=2 dutyCycle=50 --for 1"_s
                               << QByteArray("[1] setValue: doneOk=true\n")
                               << QByteArray("the trace ends here: File too large");
    // The reader is there before the trace is begun, and goes with what it has read.
    const QString readerGoes = "mkfifo t; exec 3<>t 4<t 5>t 3>&-; head -c 10 <&4 >head & exec 4<&-\n"_s;
    QTest::newRow("reader gone") << readerGoes + "\"$BENCH\" --trace t run getValue channel=START --for 1"_s
                                 << QByteArray("[1] getValue: value=0\n") << ends;
    QTest::newRow("reader gone with the window")
        << readerGoes + "\"$BENCH\" --trace t panel --screenshot p.png --for 1\n"
                        "status=$?; ls p.png; exit $status"_s
        << QByteArray("p.png\n") << ends;
    QTest::newRow("reader gone with a shell")
        << readerGoes + "\"$BENCH\" --trace t shell <<< $'sleep 1000\\ngetValue channel=START'"_s
        << QByteArray("[1] getValue: value=0\n") << ends;
}

void TestTraceFaults::aTraceThatEndsMeanwhileIsToldOnceAndFailsTheRun()
{
    QFETCH(QString, script);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, message);
    const BenchRun run = runScript(script);
    QCOMPARE(run.status, 1);
    QCOMPARE(run.output, output);
    QVERIFY2(run.errors.endsWith("appvantor: t: " + message + '\n') && run.errors.count("appvantor: ") == 1,
             run.errors.constData());
}

/// The head of the trace fills the one block that the file may have; the time of the end does not fit in.
void TestTraceFaults::aDiskThatIsFullAtTheLastWriteFailsTheRun()
{
    constexpr int block = 1024;
    const auto traceOf = [](const QString& line, const char* limit) {
        return runScript("ulimit -f %1; \"$BENCH\" --trace t --config \"%2\" shell; "
                         "status=$?; cat t; exit $status"_s.arg(QLatin1String(limit), boardWithLine(line)));
    };
    const QString name = "a"_s;
    const int head = traceOf(name, "unlimited").output.lastIndexOf('#');
    const BenchRun run = traceOf(name.repeated(1 + block - head), "1");
    QCOMPARE(run.output.size(), block);
    QVERIFY(run.output.endsWith("$end\n"));
    QCOMPARE(run.errors, QByteArray("appvantor: t: the trace ends here: File too large\n"));
    QCOMPARE(run.status, 1);
}

void TestTraceFaults::aTraceIsWrittenToAPipe()
{
    const BenchRun run = runScript("mkfifo t; exec 3<>t 4<t 3>&-\n"
                                   "\"$BENCH\" --trace t run switchValue channel=START >order\n"
                                   "status=$?; cat <&4; exit $status"_s);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QVERIFY(run.output.startsWith("$date "));
    QVERIFY(run.output.contains("\n1!\n"));
}

void TestTraceFaults::aReaderThatIsBusyMissesNothing()
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
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QVERIFY(trace.mid(trace.lastIndexOf('#')).endsWith('\n'));
    QVERIFY(!trace.contains("$dumpoff"));
}

/// The head of the trace alone is more than the pipe holds.
void TestTraceFaults::aReaderThatSleepsHoldsNothingUp()
{
    NarrowPipe pipe;
    const QString board = boardWithLine("a"_s.repeated(9000));
    BenchProcess bench({"--trace"_s, pipe.file(), "--config"_s, board, "shell"_s});
    bench.process().write("listenToAll\nsleep 50\nstop 1\n");
    QVERIFY(bench.waitForOutput("[1] listenToAll: value=0\n"));
    QVERIFY(pipe.isFull());
    bench.process().closeWriteChannel();
    QVERIFY(pipe.readUntilEnd(&bench).contains("\n$dumpvars\n0!\n$end\n#"));
    QCOMPARE(bench.end().status, 0);
}

QTEST_GUILESS_MAIN(TestTraceFaults)
#include "test_trace_faults.moc"
