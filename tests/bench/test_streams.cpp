#include "bench_process.h"
#include "literals.h"
#include "narrow_pipe.h"

#include <QRegularExpression>
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
    return runScript(QLatin1String(c_brokenPipe) + "\"$BENCH\" "_s + words);
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
    void eventsThatASleepingReaderMissesAreCountedInTheirPlace_data();
    void eventsThatASleepingReaderMissesAreCountedInTheirPlace();
    void aScriptThatIsFasterThanItsReaderIsHeldBack();
    void messagesThatASleepingReaderMissesAreCounted();
    void theStreamsOfOthersStayAsTheyAre();
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
                << line + " >/dev/full"_s << QByteArray("No space left on device");
            QTest::addRow("broken: %s%s", options, words) << line + " >&3"_s << QByteArray("Broken pipe");
        }
    }
    QTest::newRow("file that must not grow")
        << "shell --echo >file < <(yes '#')"_s << QByteArray("File too large");
}

void TestStreams::anOutputThatCannotBeWrittenIsToldOnceAndEndsTheRun()
{
    QFETCH(QString, words);
    QFETCH(QByteArray, reason);
    const QString input = words.contains(QLatin1Char('<')) ? QString() : QString::fromLatin1(c_input);
    const BenchRun run =
        runScript("ulimit -f 8\n"_s + QLatin1String(c_brokenPipe) + "\"$BENCH\" %1 %2"_s.arg(words, input));
    QCOMPARE(run.errors, "appvantor: standard output cannot be written: " + reason + '\n');
    QCOMPARE(run.status, 1);
}

void TestStreams::aReaderThatGoesAwayEndsTheRun_data()
{
    QTest::addColumn<QString>("script");
    QTest::newRow("shell")
        << "yes 'getValue channel=START' | { \"$BENCH\" shell; echo $? >status; } | head -n 1"_s;
    QTest::newRow("listening")
        << "{ \"$BENCH\" run startListening channel=TEMPERATURE; echo $? >status; } | head -n 1"_s;
    QTest::newRow("listening, with JSON")
        << "{ \"$BENCH\" run startListening channel=TEMPERATURE --json; echo $? >status; } | head -n 1"_s;
}

void TestStreams::aReaderThatGoesAwayEndsTheRun()
{
    QFETCH(QString, script);
    const BenchRun run = runScript(script + "; exit $(cat status)"_s);
    QCOMPARE(run.output.count('\n'), 1);
    QCOMPARE(run.errors, QByteArray("appvantor: standard output cannot be written: Broken pipe\n"));
    QCOMPARE(run.status, 1);
}

void TestStreams::aFailureOutweighsTheOutput()
{
    QCOMPARE(runBeyond("run nosuch >&3"_s).status, 2);
    QCOMPARE(runBeyond("shell >&3 <<< nosuch"_s).status, 2);
}

void TestStreams::eventsThatASleepingReaderMissesAreCountedInTheirPlace_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("lost");
    QTest::addColumn<QByteArray>("success");
    QTest::newRow("text") << QStringList() << "^\\[(\\d+)\\] \\S+  lastValue=(\\d)"_s
                          << "^\\[(\\d+)\\] (\\d+) events lost: the reader was too slow$"_s
                          << QByteArray("] setValue: doneOk=true\n");
    QTest::newRow("JSON") << QStringList{"--json"_s}
                          << "^{\"order\":(\\d+),.*\"event\":{\"lastValue\":(\\d),"_s
                          << "^{\"order\":(\\d+),\"lost\":(\\d+)}$"_s
                          << QByteArray("\"success\":true,\"results\":{\"doneOk\":true}}\n");
}

/// Each listener hears of 0, 1, 0 … in turn, so that the level of an event tells whether the count before it
/// is right. Nobody reads until the script is through.
void TestStreams::eventsThatASleepingReaderMissesAreCountedInTheirPlace()
{
    QFETCH(QStringList, options);
    QFETCH(QString, event);
    QFETCH(QString, lost);
    QFETCH(QByteArray, success);
    constexpr int listeners = 60;
    constexpr int rounds = 2000;
    NarrowPipe pipe(1 << 20);
    const QString trace = temporaryFile(QByteArray(), "vcd"_s);
    BenchProcess bench(options + QStringList{"--trace"_s, trace, "shell"_s}, pipe.file());
    bench.process().write(QByteArray("startListening channel=DOOR\n").repeated(listeners));
    bench.process().write(
        QByteArray("setValue channel=DOOR state=ON\nsetValue channel=DOOR state=OFF\n").repeated(rounds));
    bench.process().closeWriteChannel();
    QTRY_VERIFY_WITH_TIMEOUT(isTraceComplete(trace), 60000);
    const QByteArray output = pipe.readUntilEnd(&bench);
    const QRegularExpression eventLine(event);
    const QRegularExpression lostLine(lost);
    QVector<int> heard(listeners + 1, 0);
    int allLost = 0;
    for (const QString& line : QString::fromUtf8(output).split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch found = eventLine.match(line);
        const QRegularExpressionMatch missed = lostLine.match(line);
        if (found.hasMatch()) {
            QCOMPARE(found.captured(2).toInt(), heard[found.captured(1).toInt()]++ % 2);
        } else if (missed.hasMatch()) {
            heard[missed.captured(1).toInt()] += missed.captured(2).toInt();
            allLost += missed.captured(2).toInt();
        }
    }
    QCOMPARE(heard, QVector<int>{0} + QVector<int>(listeners, 1 + 2 * rounds));
    QVERIFY(allLost > 0);
    QCOMPARE(output.count(success), 2 * rounds);
    QCOMPARE(bench.end().status, 0);
}

void TestStreams::aScriptThatIsFasterThanItsReaderIsHeldBack()
{
    constexpr int lines = 2000;
    const QByteArray remark = "# " + QByteArray(8000, 'x') + '\n';
    NarrowPipe pipe(1 << 20);
    BenchProcess bench({"shell"_s, "--echo"_s}, pipe.file());
    bench.process().write((remark + "getValue channel=ALARM\n").repeated(lines));
    bench.process().closeWriteChannel();
    while (bench.process().waitForBytesWritten(1000)) {
    } // until the bench takes no more
    QVERIFY(bench.process().bytesToWrite() > 0);
    const QByteArray output = pipe.readUntilEnd(&bench);
    QCOMPARE(output.count("> " + remark), lines);
    QCOMPARE(output.count("] getValue: value=1\n"), lines);
    QCOMPARE(bench.end().status, 0);
}

void TestStreams::messagesThatASleepingReaderMissesAreCounted()
{
    constexpr int lines = 1200;
    NarrowPipe pipe(1 << 20);
    const QString trace = temporaryFile(QByteArray(), "vcd"_s);
    BenchProcess bench({"--trace"_s, trace, "shell"_s}, QString(), pipe.file());
    bench.process().write(("juggle" + QByteArray(12000, 'x') + '\n').repeated(lines));
    bench.process().closeWriteChannel();
    QTRY_VERIFY_WITH_TIMEOUT(isTraceComplete(trace), 60000);
    const QByteArray errors = pipe.readUntilEnd(&bench);
    const int told = errors.count("appvantor: unknown command");
    const QByteArray loss =
        "\nappvantor: " + QByteArray::number(lines - told) + " messages lost: the reader was too slow\n";
    QVERIFY(told < lines);
    QVERIFY2(errors.endsWith(loss), errors.right(200).constData());
    QCOMPARE(bench.end().status, 2);
}

/// They may share the pipe, and rely on waiting for room in it.
void TestStreams::theStreamsOfOthersStayAsTheyAre()
{
    const BenchRun run = runScript("mkfifo o; exec 3<>o; flags() { grep flags /proc/$$/fdinfo/3; }; flags\n"
                                   "\"$BENCH\" run listenToAll >&3 2>&3 & until_caught $! 15\n"
                                   "head -n 1 <&3 >line; flags; kill $!; wait $!"_s);
    QCOMPARE(run.lines().size(), 2);
    QCOMPARE(run.lines().first(), run.lines().last());
    QCOMPARE(run.status, 0);
}

/// Another program on the same terminal or pipe may have made it so.
void TestStreams::anOutputThatDoesNotBlockIsWaitedFor()
{
    const BenchRun run =
        runScript("mkfifo o; { until [ -e full ]; do sleep 0.01; done; sleep 0.2; tr -d '\\0'; } <o &\n"
                  "{ dd if=/dev/zero oflag=nonblock bs=4096 2>&-; touch full; \"$BENCH\" channels; } >o\n"
                  "status=$?; wait; exit $status"_s);
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
        "echo 'getValue channel=START' | \"$BENCH\" --trace t %1 >&- && [ ! -e t -o -s t ]"_s.arg(words));
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
                << "%1 %2"_s.arg(QLatin1String(words), QLatin1String(errors)) << status
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
            QTest::addRow("%s %s", words, input) << "%1 %2"_s.arg(QLatin1String(words), QLatin1String(input));
        }
    }
}

void TestStreams::aMissingInputHarmsNothing()
{
    QFETCH(QString, words);
    const BenchRun run = runScript("\"$BENCH\" "_s + words);
    QVERIFY2(!run.errors.contains("appvantor: "), run.errors.constData());
    QCOMPARE(run.status, 0);
}

void TestStreams::anInputThatCannotBeReadIsTold_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("a folder") << "</"_s << QByteArray("standard input cannot be read: Is a directory");
    QTest::newRow("for writing only")
        << "0>file"_s << QByteArray("standard input cannot be read: Bad file descriptor");
    QTest::newRow("an endless line") << "</dev/zero"_s
                                     << QByteArray("standard input: expected lines of at most 1048576 bytes");
}

void TestStreams::anInputThatCannotBeReadIsTold()
{
    QFETCH(QString, input);
    QFETCH(QByteArray, message);
    const BenchRun run = runScript("\"$BENCH\" shell "_s + input);
    QCOMPARE(run.errors, "appvantor: " + message + '\n');
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.status, 2);
}

QTEST_GUILESS_MAIN(TestStreams)
#include "test_streams.moc"
