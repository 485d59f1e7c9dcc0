#include "bench_process.h"
#include "literals.h"

#include <QtTest>

/// Arguments that are wrong, and help.
class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongUsageEndsWithStatus2AndSaysWhatWasExpected_data();
    void wrongUsageEndsWithStatus2AndSaysWhatWasExpected();
    void helpListsSubcommandsOptionsAndExitStatuses();
    void everySubcommandHasItsHelp_data();
    void everySubcommandHasItsHelp();
    void helpOfASubcommandShowsItsOwnOptionsOnly();
    void logLevelOffSilencesErrorReports();
    void anUnknownToolIsWrongUsage();
};

void TestCommandLine::wrongUsageEndsWithStatus2AndSaysWhatWasExpected_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("message");

    QTest::newRow("unknown subcommand") << "juggle"
                                        << "unknown subcommand \"juggle\"; expected one of: window, "
                                           "commands, channels, run, shell, discover, panel";
    QTest::newRow("unknown option") << "--colour commands"
                                    << "Unknown option 'colour'.";
    QTest::newRow("option of another subcommand") << "commands --count 3"
                                                  << "commands: Unknown option 'count'.";
    QTest::newRow("option without its value") << "commands --config"
                                              << "Missing value after '--config'.";
    QTest::newRow("words too many") << "commands now"
                                    << "commands: unexpected \"now\"";
    QTest::newRow("run without a command")
        << "run"
        << "run: expected COMMAND [NAME=VALUE …]; \"appvantor commands\" lists them";
    QTest::newRow("unknown command")
        << "run nosuch"
        << "unknown command \"nosuch\"; the tool has: setValue, switchValue, getValue, "
           "startListening, init, listenToAll, stopTheCommand, stopListening";
    QTest::newRow("unknown parameter")
        << "run getValue colour=red"
        << "unknown parameter \"colour\" of command \"getValue\"; it takes: \"channel\"";
    QTest::newRow("unknown parameter of a stop name")
        << "run stopListening colour=red"
        << "unknown parameter \"colour\" of command \"stopListening\"; it takes: \"channel\", \"edge\"";
    QTest::newRow("value out of range")
        << "run setValue channel=START value=65536"
        << "parameter \"value\" of command \"setValue\" cannot hold \"65536\"; "
           "expected a whole number from 0 to 65535";
    QTest::newRow("no number")
        << "run setValue channel=START duration=long"
        << "parameter \"duration\" of command \"setValue\" cannot hold \"long\"; expected a "
           "whole number from -2147483648 to 2147483647";
    QTest::newRow("no assignment") << "run getValue START"
                                   << "expected NAME=VALUE, found \"START\"";
    QTest::newRow("twice the same") << "run getValue channel=A channel=B"
                                    << "parameter \"channel\" is given twice";
    QTest::newRow("broken JSON") << "run init channels=[1,"
                                 << "parameter \"channels\": ";
    QTest::newRow("negative time") << "run getValue channel=START --for -1"
                                   << "--for: expected a number of seconds from 0 to 1000000, found \"-1\"";
    QTest::newRow("time that is none")
        << "run getValue channel=START --for nan"
        << "--for: expected a number of seconds from 0 to 1000000, found \"nan\"";
    QTest::newRow("count of nothing") << "run listenToAll --count 0"
                                      << "--count: expected a whole number from 1, found \"0\"";
    QTest::newRow("log level")
        << "--log-level loud commands"
        << "--log-level: expected one of debug, info, warning, critical, off, found \"loud\"";
    QTest::newRow("size") << "panel --size 12by9"
                          << "--size: expected WIDTHxHEIGHT from 1x1 to 16384x16384, found "
                             "\"12by9\"";
    QTest::newRow("size of nothing") << "panel --size 0x9"
                                     << "--size: expected WIDTHxHEIGHT";
    QTest::newRow("scale") << "panel --scale 9"
                           << "--scale: expected a number from 0.5 to 4, found \"9\"";
    QTest::newRow("theme") << "panel --theme pink"
                           << "--theme: expected one of light, dark, found \"pink\"";
    QTest::newRow("language") << "panel --language de"
                              << "--language: expected one of en, fr, found \"de\"";
    QTest::newRow("configuration without a name") << "--config= commands"
                                                  << "--config: expected a name, found nothing";
    QTest::newRow("trace in no folder")
        << "--trace /nonexistent/t.vcd commands"
        << "/nonexistent/t.vcd: the trace cannot be written: No such file or directory";
}

void TestCommandLine::wrongUsageEndsWithStatus2AndSaysWhatWasExpected()
{
    QFETCH(QString, arguments);
    QFETCH(QString, message);
    const BenchRun run = runBench(arguments.split(QLatin1Char(' ')));
    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(run.errors.startsWith("appvantor: " + message.toUtf8()), run.errors.constData());
}

void TestCommandLine::helpListsSubcommandsOptionsAndExitStatuses()
{
    const BenchRun run = runBench({"--help"_s});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors, QByteArray());
    for (const char* word :
         {"window", "commands", "channels", "run", "shell", "panel", "--config", "--json", "--trace",
          "--log-level", "--tool", "Exit status: 0 success, 1 an order failed"}) {
        QVERIFY2(run.output.contains(word), word);
    }
}

void TestCommandLine::everySubcommandHasItsHelp_data()
{
    QTest::addColumn<QString>("subcommand");
    for (const char* name : {"window", "commands", "channels", "run", "shell", "panel"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestCommandLine::everySubcommandHasItsHelp()
{
    QFETCH(QString, subcommand);
    const BenchRun run = runBench({subcommand, "--help"_s});
    QCOMPARE(run.status, 0);
    QVERIFY(run.output.contains(" " + subcommand.toUtf8()));
    QVERIFY(run.output.contains(subcommand.toUtf8() + ": "));
    QVERIFY(run.output.contains("--config"));
}

void TestCommandLine::helpOfASubcommandShowsItsOwnOptionsOnly()
{
    const QByteArray run = runBench({"run"_s, "--help"_s}).output;
    QVERIFY(run.contains("--count"));
    QVERIFY(!run.contains("--screenshot"));
    QVERIFY(run.contains("COMMAND [NAME=VALUE"));
}

void TestCommandLine::logLevelOffSilencesErrorReports()
{
    const QStringList order = {"run"_s, "getValue"_s, "channel="_s};
    QVERIFY(runBench(order).errors.contains("ERROR: Tool channel is empty"));
    const BenchRun silenced = runBench(QStringList{"--log-level"_s, "off"_s} + order);
    QCOMPARE(silenced.status, 1);
    QCOMPARE(silenced.errors,
             QByteArray("appvantor: [1] getValue failed: the command sent no device request\n"));
}

void TestCommandLine::anUnknownToolIsWrongUsage()
{
    const BenchRun run = runBench({"--tool"_s, "Nobody"_s, "channels"_s});
    QCOMPARE(run.status, 2);
    QCOMPARE(run.errors, QByteArray("appvantor: there is no tool \"Nobody\"\n"));
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "test_command_line.moc"
