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
            "unknown subcommand \"juggle\"; expected one of: window, commands, channels, get, set, off, "
            "watch, "
            "run, shell, serve, rigs, lease, release, discover, panel, complete, about");
        row("misspelt subcommand", "chanels", "unknown subcommand \"chanels\"; did you mean \"channels\"?");
        row("unknown option", "--colour commands", "unknown option \"--colour\"\n");
        row("unknown letter", "-x commands", "unknown option \"-x\"\n");
        row("misspelt option", "--confg x run getValue",
            "unknown option \"--confg\"; did you mean \"--config\"?");
        row("option of another subcommand", "commands --count 3",
            "commands takes no option \"--count\"; \"appvantor commands --help\" lists its own");
        row("option without its value", "commands --config", "--config: expected FILE, found nothing");
        row("option with a value too many", "--json=yes commands", "--json=yes: expected no value");
        row("words too many", "commands now", "commands: unexpected \"now\"");
        row("run without a command", "run",
            "run: expected COMMAND [NAME=VALUE …]; \"appvantor run --help\" tells more");
        row("nothing to get", "get", "get: expected CHANNEL…; \"appvantor get --help\" tells more");
        row("nothing to set", "set", "set: expected CHANNEL=VALUE…; \"appvantor set --help\" tells more");
        row("nothing to watch", "watch", "watch: expected CHANNEL…; \"appvantor watch --help\" tells more");
        row("channel that is none", "get ALARM DOR",
            "the tool has no channel \"DOR\"; did you mean \"DOOR\"?");
        row("channel that cannot be watched", "watch ALARM WINDOW", "the tool has no channel \"WINDOW\"\n");
        row("setting that is none", "set START=ON DOOR=AJAR", "channel \"DOOR\": expected ON, OFF, PULSE:MS");
        row("channel set twice", "set DOOR=ON DOOR=OFF", "channel \"DOOR\" is set twice");
        row("direction that is none", "watch DOOR --edge up",
            "--edge: expected one of rising, falling, both, found \"up\"");
        row("limit that is none", "watch DOOR --timeout soon",
            "--timeout: expected a number of seconds from 0 to 1000000, found \"soon\"");
        row("unknown command", "run nosuch",
            "unknown command \"nosuch\"; the tool has: setValue, switchValue, getValue, startListening, "
            "init, listenToAll, stopTheCommand, stopListening");
        row("unknown command with a mistake behind it", "run nosuch START", "unknown command \"nosuch\"; ");
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
        row("picture of another form", "panel --screenshot p.jpg",
            "--screenshot: expected a file that ends with .png, or \"-\" for standard output, found "
            "\"p.jpg\"");
        row("theme", "panel --theme pink", "--theme: expected one of light, dark, found \"pink\"");
        row("language", "panel --language de", "--language: expected one of en, fr, found \"de\"");
        row("misspelt tool", "--tool Front_panel channels",
            "there is no tool \"Front_panel\"; did you mean \"Front panel\"?\n");
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
             {"Usage: appvantor [options] SUBCOMMAND\n", "window", "commands", "channels", "get", "set",
              "off", "watch", "run", "shell", "panel", "--config", "--json", "--trace", "--log-level",
              "--tool", "about", "--version", "Exit status: 0 success, 1 an order failed"}) {
            QVERIFY2(run.output.contains(word), word);
        }
        for (const char* word : {"  --count", "  --screenshot", "  --off-at-end"}) {
            QVERIFY2(!run.output.contains(word), word);
        }
    }

    /// The window's texts follow the language of the user; what scripts and logs read does not.
    void theCommandLineIsEnglishInEveryLanguage()
    {
        const QString orders = "unset LC_ALL; $BENCH run getValue channel=NOWHERE; "
                               "$BENCH shell <<<'repeat 2'; $BENCH run getValue chanel=START; "
                               "echo '{\"nam\": 1}' >wrong.json; $BENCH --config wrong.json channels"_s;
        const BenchRun english = runScript("export LANG=C.UTF-8 LANGUAGE=en; "_s + orders);
        QCOMPARE(runScript("export LANG=fr_FR.UTF-8 LANGUAGE=fr; "_s + orders), english);
        QVERIFY2(english.errors.contains("the command sent no device request"), english.errors);
        QVERIFY2(english.errors.contains("\"repeat\" without an \"end\""), english.errors);
    }

    void helpOfASubcommandShowsItsOwnOptionsOnly_data()
    {
        const Rows<QStringList, QStringList> row("own", "foreign");
        row("window", "--config --screenshot --orders"_words, "--count --echo"_words);
        row("commands", "--config"_words, "--screenshot --count --echo"_words);
        row("channels", "--config"_words, "--screenshot --count --echo"_words);
        row("get", {"--config"_s, "CHANNEL…\n"_s}, "--count --for --off-at-end"_words);
        row("set", {"--for"_s, "--off-at-end"_s, "CHANNEL=VALUE…\n"_s}, "--count --echo"_words);
        row("off", "--config"_words, "--count --for --off-at-end"_words);
        row("watch", "--count --edge --timeout"_words, "--for --off-at-end"_words);
        row("run", {"--config"_s, "--count"_s, "COMMAND [NAME=VALUE …]\n"_s}, "--screenshot --echo"_words);
        row("shell", "--config --echo"_words, "--screenshot --count"_words);
        row("serve", "--read-only --off-at-end"_words, "--count --echo"_words);
        row("panel", "--config --screenshot"_words, "--count --orders"_words);
        row("about", "--json"_words, "--screenshot --version"_words);
    }

    void helpOfASubcommandShowsItsOwnOptionsOnly()
    {
        QFETCH(QStringList, own);
        QFETCH(QStringList, foreign);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const BenchRun run = runBench({name, "--help"_s});
        QCOMPARE(run, (BenchRun{0, run.output}));
        const QString help = QString::fromUtf8(run.output);
        for (const QString& text : own + QStringList{"Usage: appvantor "_s + name, name + ": "_s}) {
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
