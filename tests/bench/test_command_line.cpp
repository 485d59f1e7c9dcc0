#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QtTest>

/// Arguments that are wrong, and help.
class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongUsageEndsWithStatus2AndSaysWhatWasExpected_data()
    {
        const Rows<QString, QString> row("arguments", "message");
        row("unknown subcommand", "juggle",
            "unknown subcommand \"juggle\"; expected one of: window, commands, channels, run, shell, "
            "discover, panel");
        row("unknown option", "--colour commands", "Unknown option 'colour'.");
        row("option of another subcommand", "commands --count 3", "commands: Unknown option 'count'.");
        row("option without its value", "commands --config", "Missing value after '--config'.");
        row("words too many", "commands now", "commands: unexpected \"now\"");
        row("run without a command", "run",
            "run: expected COMMAND [NAME=VALUE …]; \"appvantor commands\" lists them");
        row("unknown command", "run nosuch",
            "unknown command \"nosuch\"; the tool has: setValue, switchValue, getValue, startListening, "
            "init, listenToAll, stopTheCommand, stopListening");
        row("unknown parameter", "run getValue colour=red",
            "unknown parameter \"colour\" of command \"getValue\"; it takes: \"channel\"");
        row("unknown parameter of a stop name", "run stopListening colour=red",
            "unknown parameter \"colour\" of command \"stopListening\"; it takes: \"channel\", \"edge\"");
        row("value out of range", "run setValue channel=START value=65536",
            "parameter \"value\" of command \"setValue\" cannot hold \"65536\"; expected a whole number from "
            "0 to 65535");
        row("no number", "run setValue channel=START duration=long",
            "parameter \"duration\" of command \"setValue\" cannot hold \"long\"; expected a whole number "
            "from -2147483648 to 2147483647");
        row("no assignment", "run getValue START", "expected NAME=VALUE, found \"START\"");
        row("twice the same", "run getValue channel=A channel=B", "parameter \"channel\" is given twice");
        row("broken JSON", "run init channels=[1,", "parameter \"channels\": ");
        row("negative time", "run getValue channel=START --for -1",
            "--for: expected a number of seconds from 0 to 1000000, found \"-1\"");
        row("time that is none", "run getValue channel=START --for nan",
            "--for: expected a number of seconds from 0 to 1000000, found \"nan\"");
        row("count of nothing", "run listenToAll --count 0",
            "--count: expected a whole number from 1, found \"0\"");
        row("log level", "--log-level loud commands",
            "--log-level: expected one of debug, info, warning, critical, off, found \"loud\"");
        row("size", "panel --size 12by9",
            "--size: expected WIDTHxHEIGHT from 1x1 to 16384x16384, found \"12by9\"");
        row("size of nothing", "panel --size 0x9", "--size: expected WIDTHxHEIGHT");
        row("scale", "panel --scale 9", "--scale: expected a number from 0.5 to 4, found \"9\"");
        row("theme", "panel --theme pink", "--theme: expected one of light, dark, found \"pink\"");
        row("language", "panel --language de", "--language: expected one of en, fr, found \"de\"");
        row("unknown tool", "--tool Nobody channels", "there is no tool \"Nobody\"\n");
        row("configuration without a name", "--config= commands", "--config: expected a name, found nothing");
        row("trace in no folder", "--trace /nonexistent/t.vcd commands",
            "/nonexistent/t.vcd: the trace cannot be written: No such file or directory");
    }

    void wrongUsageEndsWithStatus2AndSaysWhatWasExpected()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, message);
        const BenchRun run = runBench(arguments.split(QLatin1Char(' ')));
        QCOMPARE(run, (BenchRun{2, "", run.errors}));
        QVERIFY2(run.errors.startsWith("appvantor: " + message.toUtf8()), run.errors.constData());
    }

    void helpListsSubcommandsOptionsAndExitStatuses()
    {
        const BenchRun run = runBench({"--help"_s});
        QCOMPARE(run, (BenchRun{0, run.output}));
        for (const char* word :
             {"window", "commands", "channels", "run", "shell", "panel", "--config", "--json", "--trace",
              "--log-level", "--tool", "Exit status: 0 success, 1 an order failed"}) {
            QVERIFY2(run.output.contains(word), word);
        }
    }

    void helpOfASubcommandShowsItsOwnOptionsOnly_data()
    {
        const Rows<QStringList, QStringList> row("own", "foreign");
        row("window", "--config --screenshot --orders"_words, "--count --echo"_words);
        row("commands", "--config"_words, "--screenshot --count --echo"_words);
        row("channels", "--config"_words, "--screenshot --count --echo"_words);
        row("run", {"--config"_s, "--count"_s, "COMMAND [NAME=VALUE"_s}, "--screenshot --echo"_words);
        row("shell", "--config --echo"_words, "--screenshot --count"_words);
        row("panel", "--config --screenshot"_words, "--count --orders"_words);
    }

    void helpOfASubcommandShowsItsOwnOptionsOnly()
    {
        QFETCH(QStringList, own);
        QFETCH(QStringList, foreign);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const BenchRun run = runBench({name, "--help"_s});
        QCOMPARE(run, (BenchRun{0, run.output}));
        const QString help = QString::fromUtf8(run.output);
        for (const QString& text : own + QStringList{" "_s + name, name + ": "_s}) {
            QVERIFY2(help.contains(text), qPrintable(text));
        }
        for (const QString& text : foreign) {
            QVERIFY2(!help.contains(text), qPrintable(text));
        }
    }

    void logLevelOffSilencesErrorReports()
    {
        QVERIFY(runBench("run getValue channel="_words).errors.contains("ERROR: Tool channel is empty"));
        QCOMPARE(runBench("--log-level off run getValue channel="_words),
                 (BenchRun{1, "", "appvantor: [1] getValue failed: the command sent no device request\n"}));
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "test_command_line.moc"
