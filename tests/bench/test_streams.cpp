#include "bench_process.h"

#include <QtTest>

namespace {

/// Subcommands that write to standard output, each with the input of a shell.
const char* const c_writers[] = {
    "--help",       "run --help",
    "commands",     "channels",
    "shell",        "run getValue channel=START",
    "shell --echo", "run startListening channel=TEMPERATURE --count 1000000",
};

const char* const c_input = "<<< $'getValue channel=START\\nsleep 100000000'";

/// A script's beginning: 3 is a pipe without a reader.
const char* const c_brokenPipe = "mkfifo o; exec 4<>o; exec 3>o; exec 4<&-\n";

BenchRun runBeyond(const QString& words)
{
    return runScript(QLatin1String(c_brokenPipe) + QStringLiteral("\"$BENCH\" ") + words);
}

} // namespace

/// Standard streams that are closed, full, or led nowhere.
class TestStreams : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOutputThatCannotBeWrittenIsToldOnceAndEndsTheRun_data();
    void anOutputThatCannotBeWrittenIsToldOnceAndEndsTheRun();
    void aReaderThatGoesAwayEndsTheRun_data();
    void aReaderThatGoesAwayEndsTheRun();
    void aFailureOutweighsTheOutput();
    void anOutputThatDoesNotBlockIsWaitedFor();
    void aClosedOutputHarmsNothing_data();
    void aClosedOutputHarmsNothing();
    void errorsThatCannotBeWrittenChangeNothing_data();
    void errorsThatCannotBeWrittenChangeNothing();
    void aMissingInputHarmsNothing_data();
    void aMissingInputHarmsNothing();
    void anInputThatCannotBeReadIsTold_data();
    void anInputThatCannotBeReadIsTold();
};

void TestStreams::anOutputThatCannotBeWrittenIsToldOnceAndEndsTheRun_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QByteArray>("reason");
    for (const char* options : {"", "--json "}) {
        for (const char* words : c_writers) {
            const QString line = QLatin1String(options) + QLatin1String(words);
            QTest::addRow("full: %s%s", options, words)
                << line + QStringLiteral(" >/dev/full") << QByteArray("No space left on device");
            QTest::addRow("broken: %s%s", options, words)
                << line + QStringLiteral(" >&3") << QByteArray("Broken pipe");
        }
    }
    QTest::newRow("file that must not grow")
        << QStringLiteral("shell --echo >file < <(yes '#')") << QByteArray("File too large");
}

void TestStreams::anOutputThatCannotBeWrittenIsToldOnceAndEndsTheRun()
{
    QFETCH(QString, words);
    QFETCH(QByteArray, reason);
    const QString input = words.contains(QLatin1Char('<')) ? QString() : QString::fromLatin1(c_input);
    const BenchRun run = runScript(QStringLiteral("ulimit -f 8\n") + QLatin1String(c_brokenPipe) +
                                   QStringLiteral("\"$BENCH\" %1 %2").arg(words, input));
    QCOMPARE(run.errors, "appvantor: standard output cannot be written: " + reason + '\n');
    QCOMPARE(run.status, 1);
}

void TestStreams::aReaderThatGoesAwayEndsTheRun_data()
{
    QTest::addColumn<QString>("script");
    QTest::newRow("shell") << QStringLiteral(
        "yes 'getValue channel=START' | { \"$BENCH\" shell; echo $? >status; } | head -n 1");
    QTest::newRow("listening") << QStringLiteral(
        "{ \"$BENCH\" run startListening channel=TEMPERATURE; echo $? >status; } | head -n 1");
    QTest::newRow("listening, with JSON") << QStringLiteral(
        "{ \"$BENCH\" run startListening channel=TEMPERATURE --json; echo $? >status; } | head -n 1");
}

void TestStreams::aReaderThatGoesAwayEndsTheRun()
{
    QFETCH(QString, script);
    const BenchRun run = runScript(script + QStringLiteral("; exit $(cat status)"));
    QCOMPARE(run.output.count('\n'), 1);
    QCOMPARE(run.errors, QByteArray("appvantor: standard output cannot be written: Broken pipe\n"));
    QCOMPARE(run.status, 1);
}

void TestStreams::aFailureOutweighsTheOutput()
{
    QCOMPARE(runBeyond(QStringLiteral("run nosuch >&3")).status, 2);
    QCOMPARE(runBeyond(QStringLiteral("shell >&3 <<< nosuch")).status, 2);
}

/// Another program on the same terminal or pipe may have made it so.
void TestStreams::anOutputThatDoesNotBlockIsWaitedFor()
{
    const BenchRun run = runScript(QStringLiteral(
        "mkfifo o; { until [ -e full ]; do sleep 0.01; done; sleep 0.2; tr -d '\\0'; } <o &\n"
        "{ dd if=/dev/zero oflag=nonblock bs=4096 2>&-; touch full; \"$BENCH\" channels; } >o\n"
        "status=$?; wait; exit $status"));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QVERIFY2(run.output.startsWith("CHANNEL "), run.output.left(80).constData());
}

void TestStreams::aClosedOutputHarmsNothing_data()
{
    QTest::addColumn<QString>("words");
    for (const char* words : {"--help", "commands", "--json channels", "run getValue channel=START", "shell",
                              "run listenToAll --count 1", "panel --screenshot p.png"}) {
        QTest::newRow(words) << QString::fromLatin1(words);
    }
}

void TestStreams::aClosedOutputHarmsNothing()
{
    QFETCH(QString, words);
    const BenchRun run = runScript(
        QStringLiteral("echo 'getValue channel=START' | \"$BENCH\" --trace t %1 >&- && [ ! -e t -o -s t ]")
            .arg(words));
    QVERIFY2(!run.errors.contains("appvantor: "), run.errors.constData());
    QCOMPARE(run.status, 0);
}

void TestStreams::errorsThatCannotBeWrittenChangeNothing_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("output");
    for (const char* errors : {"2>&-", "2>/dev/full", "2>&3", "2>&- >&- <&-"}) {
        const auto row = [errors](const char* words, int status, const char* output) {
            const bool heard = qstrcmp(errors, "2>&- >&- <&-") != 0;
            QTest::addRow("%s %s", words, errors)
                << QStringLiteral("%1 %2").arg(QLatin1String(words), QLatin1String(errors)) << status
                << QByteArray(heard ? output : "");
        };
        row("juggle", 2, "");
        row("--config nowhere.json commands", 2, "");
        row("run nosuch", 2, "");
        row("run getValue channel=", 1, "");
        row("run getValue channel=START", 0, "[1] getValue: value=0\n");
        row("panel --screenshot nowhere/p.png", 2, "");
    }
}

void TestStreams::errorsThatCannotBeWrittenChangeNothing()
{
    QFETCH(QString, words);
    QFETCH(int, status);
    QFETCH(QByteArray, output);
    const BenchRun run = runBeyond(words);
    QCOMPARE(run.output, output);
    QCOMPARE(run.status, status);
}

void TestStreams::aMissingInputHarmsNothing_data()
{
    QTest::addColumn<QString>("words");
    for (const char* words :
         {"shell", "commands", "--trace t run getValue channel=START", "panel --screenshot p.png"}) {
        for (const char* input : {"<&-", "</dev/null"}) {
            QTest::addRow("%s %s", words, input)
                << QStringLiteral("%1 %2").arg(QLatin1String(words), QLatin1String(input));
        }
    }
}

void TestStreams::aMissingInputHarmsNothing()
{
    QFETCH(QString, words);
    const BenchRun run = runScript(QStringLiteral("\"$BENCH\" ") + words);
    QVERIFY2(!run.errors.contains("appvantor: "), run.errors.constData());
    QCOMPARE(run.status, 0);
}

void TestStreams::anInputThatCannotBeReadIsTold_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("a folder") << QStringLiteral("</")
                              << QByteArray("standard input cannot be read: Is a directory");
    QTest::newRow("for writing only")
        << QStringLiteral("0>file") << QByteArray("standard input cannot be read: Bad file descriptor");
    QTest::newRow("an endless line") << QStringLiteral("</dev/zero")
                                     << QByteArray("standard input: expected lines of at most 1048576 bytes");
}

void TestStreams::anInputThatCannotBeReadIsTold()
{
    QFETCH(QString, input);
    QFETCH(QByteArray, message);
    const BenchRun run = runScript(QStringLiteral("\"$BENCH\" shell ") + input);
    QCOMPARE(run.errors, "appvantor: " + message + '\n');
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.status, 2);
}

QTEST_GUILESS_MAIN(TestStreams)
#include "test_streams.moc"
