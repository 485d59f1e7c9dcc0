#include "bench_process.h"
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
    return QStringList{QStringLiteral("--trace"), file} + QString::fromLatin1(words).split(QLatin1Char(' '));
}

QByteArray boardWithLine(const QString& name)
{
    return QByteArray(
               R"({"device": {"type": "simulated", "lines": [ {"name": "%1"} ]}, "tools": [ {"name": "T",
      "id": "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}", "plugin": "p_tool_gpio"} ] })")
        .replace("%1", name.toUtf8());
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
    void aBusyReaderIsWaitedFor();
    void aReaderThatStaysAwayEndsTheTrace();
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
        runScript(preparation + QStringLiteral("\n{ unprivileged \"$BENCH\" --trace %1 %2\necho $?; } <<< "
                                               "'getValue channel=START' | cat; ls p.png 2>&-")
                                    .arg(file, words));
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
        << QStringLiteral("{ until [ -s t ]; do sleep 0.01; done; rm t; echo 'getValue channel=START'; } |\n"
                          "\"$BENCH\" --trace t shell")
        << QByteArray("[1] getValue: value=0\n") << lost;
    // The reader is there before the trace is begun, and goes with what it has read.
    const QString readerGoes =
        QStringLiteral("mkfifo t; exec 3<>t 4<t 5>t 3>&-; head -c 10 <&4 >head & exec 4<&-\n");
    QTest::newRow("reader gone") << readerGoes +
                                        QStringLiteral(
                                            "\"$BENCH\" --trace t run getValue channel=START --for 1")
                                 << QByteArray("[1] getValue: value=0\n") << ends;
    QTest::newRow("reader gone with the window")
        << readerGoes + QStringLiteral("\"$BENCH\" --trace t panel --screenshot p.png --for 1\n"
                                       "status=$?; ls p.png; exit $status")
        << QByteArray("p.png\n") << ends;
    QTest::newRow("reader gone with a shell")
        << readerGoes +
               QStringLiteral("\"$BENCH\" --trace t shell <<< $'sleep 1000\\ngetValue channel=START'")
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
        return runScript(QStringLiteral("ulimit -f %1; \"$BENCH\" --trace t --config \"%2\" shell; "
                                        "status=$?; cat t; exit $status")
                             .arg(QLatin1String(limit), temporaryFile(boardWithLine(line))));
    };
    const QString name = QStringLiteral("a");
    const int head = traceOf(name, "unlimited").output.lastIndexOf('#');
    const BenchRun run = traceOf(name.repeated(1 + block - head), "1");
    QCOMPARE(run.output.size(), block);
    QVERIFY(run.output.endsWith("$end\n"));
    QCOMPARE(run.errors, QByteArray("appvantor: t: the trace ends here: File too large\n"));
    QCOMPARE(run.status, 1);
}

void TestTraceFaults::aTraceIsWrittenToAPipe()
{
    const BenchRun run =
        runScript(QStringLiteral("mkfifo t; exec 3<>t 4<t 3>&-\n"
                                 "\"$BENCH\" --trace t run switchValue channel=START >order\n"
                                 "status=$?; cat <&4; exit $status"));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QVERIFY(run.output.startsWith("$version appvantor $end\n"));
    QVERIFY(run.output.contains("\n1!\n"));
}

void TestTraceFaults::aBusyReaderIsWaitedFor()
{
    NarrowPipe pipe;
    BenchProcess bench(tracedTo(pipe.file(), c_fastBlink));
    QTRY_VERIFY_WITH_TIMEOUT(pipe.isFull(), 20000);
    QByteArray trace;
    const auto goesOn = [&] {
        trace += pipe.read();
        return trace.size() > 20000;
    };
    QTRY_VERIFY_WITH_TIMEOUT(goesOn(), 20000);
    bench.send(SIGINT);
    while (bench.process().state() != QProcess::NotRunning) {
        trace += pipe.read();
        bench.process().waitForFinished(10);
    }
    trace += pipe.read();
    const BenchRun run = bench.end();
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QVERIFY(trace.mid(trace.lastIndexOf('#')).endsWith('\n'));
}

void TestTraceFaults::aReaderThatStaysAwayEndsTheTrace()
{
    const NarrowPipe pipe;
    BenchProcess bench(tracedTo(pipe.file(), c_fastBlink));
    const QByteArray expected =
        "appvantor: " + pipe.file().toUtf8() + ": the trace ends here: its reader does not keep up\n";
    QByteArray errors;
    const auto isTold = [&] {
        bench.process().waitForReadyRead(10);
        errors += bench.process().readAllStandardError();
        return errors == expected;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isTold(), 30000);
    bench.send(SIGINT);
    const BenchRun run = bench.end();
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 1);
}

QTEST_GUILESS_MAIN(TestTraceFaults)
#include "test_trace_faults.moc"
