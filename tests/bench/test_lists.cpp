#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QtTest>

/// The lists of commands and channels.
class TestLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsAreListedInTheOrderOfTheirDeclarationWithTheirExactTexts()
    {
        QCOMPARE(runBench("commands --json"_words),
                 (BenchRun{0, contentOf(QStringLiteral(DECLARED_COMMANDS))}));
    }

    void commandsAreListedForPeople()
    {
        const BenchRun run = runBench({"commands"_s});
        QCOMPARE(run.status, 0);
        QVERIFY(run.output.contains("setValue: Set the value of a GPIO pin, stopped by stopTheCommand\n"
                                    "  parameter channel (strg): Channel\n"
                                    "  parameter value (ui16): Value [default: 1]\n"));
        QVERIFY(run.output.contains("  result doneOk (bool): Job done [default: false]\n"));
    }

    void channelsAreListedWithTheirPresentValues()
    {
        const BenchRun run = runBench("channels --json"_words);
        QCOMPARE(run.status, 0);
        QCOMPARE(run.json().size(), 10);
        for (
            const char* part :
            {R"({"type":"channel","tool":"Front panel","channel":"START","name":"Start button","visibility":"public","channelType":"digitalInput","direction":"out","link":"line0","value":0})",
             R"("channelType":"digitalOutput","direction":"in","link":"line5","value":1})"}) {
            QVERIFY2(run.output.contains(part), part);
        }
    }

    void channelsAreListedForPeople()
    {
        const QStringList lines = runBench({"channels"_s}).lines();
        QCOMPARE(lines.size(), 11);
        QCOMPARE(lines.first(), "CHANNEL      TYPE           DIRECTION LINK       VALUE   NAME"_s);
        QCOMPARE(lines.at(1), "START        digitalInput   out       line0      0       Start button"_s);
    }

    void aboutTellsVersionQtAndThePluginsThatAreFound()
    {
        const QByteArray folder =
            QDir(QFileInfo(benchFile()).path() + "/../plugins"_s).canonicalPath().toUtf8();
        const QByteArray version = VERSION;
        QCOMPARE(runBench({"--version"_s}), (BenchRun{0, "appvantor " + version + '\n'}));
        QCOMPARE(runBench({"about"_s}),
                 (BenchRun{0, "appvantor " + version + ", Qt " + qVersion() + "\nplugins in " + folder +
                                  ": 1\n  " + folder + "/libp_tool_gpio.so: Tool Gpio\n"}));
        QCOMPARE(runBench("about --json"_words),
                 (BenchRun{0, R"({"type":"about","version":")" + version + R"(","qt":")" + qVersion() +
                                  R"(","pluginFolder":")" + folder + R"(","plugins":[{"file":")" + folder +
                                  R"(/libp_tool_gpio.so","name":"Tool Gpio"}]})" + '\n'}));
    }

    void columnsStayColumns()
    {
        const QString file = boardFile(
            R"("lines": [ {"name": "a line with a long name"} ], "faults": [ {"kind": "refused"} ])",
            R"({"id": "A", "name": "first", "value": [ {"id": "link", "value": "a line with a long name"} ]},
               {"id": "a channel of a long name", "name": "two\nlines"})");
        const BenchRun run = runBench({"--config"_s, file, "channels"_s});
        QCOMPARE(run,
                 (BenchRun{
                     1,
                     "CHANNEL                  TYPE           DIRECTION LINK                    VALUE   "
                     "NAME\n"
                     "A                                                 a line with a long name \u2013       "
                     "first\n"
                     "a channel of a long name                                                  \u2013       "
                     "two\\u000alines\n",
                     "appvantor: channel \"A\": the board refuses \"getValue\" of channel \"a line "
                     "with a long name\"\n"}));
    }

    void aChannelThatCannotBeReadIsListedWithTheReason_data()
    {
        const Rows<QByteArray, QByteArray, int> row("device", "failure", "status");
        row("refused", R"("faults": [ {"kind": "refused", "instruction": "getValue"} ])",
            "\"kind\":\"refusedByDevice\",\"reason\":\"the board refuses \\\"getValue\\\" of channel "
            "\\\"a\\\"\"",
            1);
        row("away", R"("connected": false)",
            R"("kind":"deviceUnreachable","reason":"the simulated board is unplugged")", 3);
    }

    void aChannelThatCannotBeReadIsListedWithTheReason()
    {
        QFETCH(QByteArray, device);
        QFETCH(QByteArray, failure);
        QFETCH(int, status);
        const QString file =
            boardFile(R"("lines": [ {"name": "a"} ], )" + device,
                      R"({"id": "A", "value": [ {"id": "link", "value": "a"} ]}, {"id": "B"})");
        const BenchRun run = runBench({"--config"_s, file, "--json"_s, "channels"_s});
        QCOMPARE(run.status, status);
        for (const QByteArray& part :
             {R"("value":null,)" + failure + "}\n",
              QByteArray(R"("channel":"B","name":"","visibility":"","channelType":"","direction":"",)"
                         R"("link":null,"value":null})")}) {
            QVERIFY2(run.output.contains(part), run.output.constData());
        }
    }
};

QTEST_GUILESS_MAIN(TestLists)
#include "test_lists.moc"
