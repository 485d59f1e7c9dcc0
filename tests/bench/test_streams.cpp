#include "bench_process.h"
#include "literals.h"
#include "narrow_pipe.h"
#include "rows.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

/// Subcommands that write to standard output, each with the input of a shell.
const char* const c_writers[] = {
    "--help",       "run --help",
    "commands",     "channels",
    "get START",    "watch TEMPERATURE",
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
    void anOutputThatCannotBeWrittenIsToldOnceAndEndsTheRun_data()
    {
        const Rows<QString, QByteArray> row("words", "reason");
        for (const char* options : {"", "--json "}) {
            for (const char* words : c_writers) {
                const QString line = QLatin1String(options) + QLatin1String(words);
                row(line.toLatin1(), line + " >/dev/full"_s, "No space left on device");
            }
        }
        row("file that must not grow", "shell --echo >file < <(yes '#')", "File too large");
    }

    void anOutputThatCannotBeWrittenIsToldOnceAndEndsTheRun()
    {
        QFETCH(QString, words);
        QFETCH(QByteArray, reason);
        const QString input = words.contains(QLatin1Char('<')) ? QString() : QString::fromLatin1(c_input);
        const BenchRun run = runScript("ulimit -f 8\n"_s + QLatin1String(c_brokenPipe) +
                                       "\"$BENCH\" %1 %2"_s.arg(words, input));
        QCOMPARE(run,
                 (BenchRun{1, run.output, "appvantor: standard output cannot be written: " + reason + '\n'}));
    }

    void aReaderThatIsGoneEndsTheRunQuietly_data()
    {
        const Rows<QString> row("words");
        for (const char* options : {"", "--json "}) {
            for (const char* words : c_writers) {
                const QByteArray line = QByteArray(options) + words;
                row(line, line.constData());
            }
        }
    }

    void aReaderThatIsGoneEndsTheRunQuietly()
    {
        QFETCH(QString, words);
        QCOMPARE(runBeyond("%1 >&3 %2"_s.arg(words, QLatin1String(c_input))), (BenchRun{141}));
    }

    void aReaderThatGoesAwayEndsTheRunQuietly_data()
    {
        const Rows<QString> row("words");
        row("shell", "shell");
        row("listening", "run startListening channel=TEMPERATURE");
        row("listening, with JSON", "run startListening channel=TEMPERATURE --json");
        row("watching", "watch TEMPERATURE");
    }

    void aReaderThatGoesAwayEndsTheRunQuietly()
    {
        QFETCH(QString, words);
        const BenchRun run =
            runScript("yes 'getValue channel=START' | { \"$BENCH\" %1; echo $? >status; } |\n"
                      "head -n 1; exit $(cat status)"_s.arg(words));
        QCOMPARE(run, (BenchRun{141, run.output}));
        QCOMPARE(run.output.count('\n'), 1);
    }

    void aFailureOutweighsTheOutput()
    {
        QCOMPARE(runBeyond("run nosuch >&3"_s).status, 2);
        QCOMPARE(runBeyond("shell >&3 <<< nosuch"_s).status, 2);
    }

    void eventsThatASleepingReaderMissesAreCountedInTheirPlace_data()
    {
        const Rows<QStringList, QString, QString, QByteArray> row("options", "event", "lost", "success");
        row("text", QStringList(), "^\\[(\\d+)\\] \\S+  lastValue=(\\d)",
            "^\\[(\\d+)\\] (\\d+) events lost: the reader was too slow$", "] setValue: doneOk=true\n");
        row("JSON", QStringList{"--json"_s},
            "^{\"type\":\"event\",\"order\":(\\d+),.*\"results\":{\"lastValue\":(\\d),",
            "^{\"type\":\"lost\",\"order\":(\\d+),.*\"lost\":(\\d+),\"reason\":\"the reader was too slow\"}$",
            "\"results\":{\"doneOk\":true}}\n");
    }

    /// Each listener hears of 0, 1, 0 … in turn, so that the level of an event tells whether the count before
    /// it is right. Nobody reads until the script is through.
    void eventsThatASleepingReaderMissesAreCountedInTheirPlace()
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

    void aScriptThatIsFasterThanItsReaderIsHeldBack()
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

    void messagesThatASleepingReaderMissesAreCounted()
    {
        constexpr int lines = 1200;
        NarrowPipe pipe(1 << 20);
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        BenchProcess bench({"--trace"_s, trace, "shell"_s, "--keep-going"_s}, QString(), pipe.file());
        bench.process().write(("juggle" + QByteArray(12000, 'x') + '\n').repeated(lines));
        bench.process().closeWriteChannel();
        QTRY_VERIFY_WITH_TIMEOUT(isTraceComplete(trace), 60000);
        const QByteArray errors = pipe.readUntilEnd(&bench);
        const int told = errors.count("unknown command \"juggle");
        const QByteArray loss =
            "\nappvantor: " + QByteArray::number(lines - told) + " messages lost: the reader was too slow\n";
        QVERIFY(told < lines);
        QVERIFY2(errors.endsWith(loss), errors.right(200).constData());
        QCOMPARE(bench.end().status, 2);
    }

    /// They may share the pipe, and rely on waiting for room in it.
    void theStreamsOfOthersStayAsTheyAre()
    {
        const BenchRun run =
            runScript("mkfifo o; exec 3<>o; flags() { grep flags /proc/$$/fdinfo/3; }; flags\n"
                      "\"$BENCH\" run listenToAll >&3 2>&3 & until_caught $! 15\n"
                      "head -n 1 <&3 >line; flags; kill $!; wait $!"_s);
        QCOMPARE(run.lines().size(), 2);
        QCOMPARE(run.lines().first(), run.lines().last());
        QCOMPARE(run.status, 0);
    }

    /// Another program on the same terminal or pipe may have made it so.
    void anOutputThatDoesNotBlockIsWaitedFor()
    {
        const BenchRun run =
            runScript("mkfifo o; { until [ -e full ]; do sleep 0.01; done; sleep 0.2; tr -d '\\0'; } <o &\n"
                      "{ dd if=/dev/zero oflag=nonblock bs=4096 2>&-; touch full; \"$BENCH\" channels; } >o\n"
                      "status=$?; wait; exit $status"_s);
        QCOMPARE(run, (BenchRun{0, run.output}));
        QVERIFY2(run.output.startsWith("CHANNEL "), run.output.left(80).constData());
    }

    void aMissingStreamHarmsNothing_data()
    {
        const Rows<QString> row("words");
        for (const char* words : {"--help", "commands", "--json channels", "run getValue channel=START",
                                  "shell", "run listenToAll --count 1", "panel --screenshot p.png"}) {
            for (const char* stream : {">&-", "<&-", "</dev/null"}) {
                const QByteArray line = QByteArray(words) + ' ' + stream;
                row(line, line.constData());
            }
        }
    }

    void aMissingStreamHarmsNothing()
    {
        QFETCH(QString, words);
        const BenchRun run = runScript(
            "echo 'getValue channel=START' | \"$BENCH\" --trace t %1 && [ ! -e t -o -s t ]"_s.arg(words));
        QVERIFY2(!run.errors.contains("appvantor: "), run.errors.constData());
        QCOMPARE(run.status, 0);
    }

    void errorsThatCannotBeWrittenChangeNothing_data()
    {
        const Rows<QString, int, QByteArray> rows("words", "status", "output");
        for (const char* errors : {"2>&-", "2>/dev/full", "2>&3", "2>&- >&- <&-"}) {
            const auto row = [&](const char* words, int status, const char* output) {
                const QByteArray line = QByteArray(words) + ' ' + errors;
                rows(line, line.constData(), status, line.contains(">&- <") ? "" : output);
            };
            row("juggle", 2, "");
            row("--config nowhere.json commands", 2, "");
            row("run nosuch", 2, "");
            row("run getValue channel=", 1, "");
            row("run getValue channel=START", 0, "[1] getValue: value=0\n");
            row("panel --screenshot nowhere/p.png", 2, "");
        }
    }

    void errorsThatCannotBeWrittenChangeNothing()
    {
        QFETCH(QString, words);
        QFETCH(int, status);
        QFETCH(QByteArray, output);
        const BenchRun run = runBeyond(words);
        QCOMPARE(run, (BenchRun{status, output, run.errors}));
    }

    void anInputThatCannotBeReadIsTold_data()
    {
        const Rows<QString, QByteArray> row("input", "message");
        row("a folder", "</", "standard input cannot be read: Is a directory");
        row("for writing only", "0>file", "standard input cannot be read: Bad file descriptor");
        row("an endless line", "</dev/zero", "standard input: expected lines of at most 1048576 bytes");
    }

    void anInputThatCannotBeReadIsTold()
    {
        QFETCH(QString, input);
        QFETCH(QByteArray, message);
        QCOMPARE(runScript("\"$BENCH\" shell "_s + input), (BenchRun{2, "", "appvantor: " + message + '\n'}));
    }
};

QTEST_GUILESS_MAIN(TestStreams)
#include "test_streams.moc"
