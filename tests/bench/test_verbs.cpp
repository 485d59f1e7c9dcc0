#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QRegularExpression>
#include <QtTest>

#include <csignal>

namespace {

/// A board whose lines r, s and in follow a, b and set, these two analogue. Every channel
/// has the name of its line in capitals; N is linked to nothing.
QString board(const QByteArray& more = QByteArray())
{
    static const QByteArray lines =
        R"("lines": [ {"name": "a"}, {"name": "b"}, {"name": "r"}, {"name": "s"},
                      {"name": "set", "kind": "analog", "direction": "out"},
                      {"name": "in", "kind": "analog", "direction": "in"} ],
           "wires": [ {"from": "a", "to": "r"}, {"from": "b", "to": "s"},
                      {"from": "set", "to": "in"} ])";
    const auto channel = [](const QByteArray& id, const QByteArray& type, const QByteArray& direction) {
        return R"({"id": ")" + id + R"(", "value": [ {"id": "type", "value": ")" + type +
               R"("}, {"id": "direction", "value": ")" + direction + R"("}, {"id": "link", "value": ")" +
               id.toLower() + R"("} ]},)";
    };
    return boardFile(lines + more,
                     channel("A", "digitalInput", "out") + channel("B", "digitalInput", "out") +
                         channel("R", "digitalOutput", "in") + channel("S", "digitalOutput", "in") +
                         channel("SET", "analogInput", "out") + channel("IN", "analogOutput", "in") +
                         R"({"id": "N", "value": [ {"id": "direction", "value": "out"} ]})");
}

BenchRun runOn(const QString& configuration, const QString& words)
{
    return runBench(QStringList{"--config"_s, configuration, "--log-level"_s, "off"_s} +
                    words.split(QLatin1Char(' ')));
}

} // namespace

/// Channels by their names: get, set, off, watch, and what is switched off at the end.
class TestVerbs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void getWritesLevelsInTheOrderOfTheWords()
    {
        QCOMPARE(runBench("get ALARM DOOR SETPOINT ALARM"_words),
                 (BenchRun{0, "ALARM=ON\nDOOR=OFF\nSETPOINT=0\n"}));
    }

    void aChannelThatCannotBeReadLeavesTheOthers()
    {
        const QString file = board(R"(, "faults": [ {"kind": "refused", "line": "b"} ])");
        QCOMPARE(runOn(file, "get A B N SET"_s),
                 (BenchRun{1, "A=OFF\nSET=0\n",
                           "appvantor: B: getValue failed: the board refuses \"getValue\" of channel \"b\"\n"
                           "appvantor: N: getValue failed: the command sent no device request\n"}));
        QCOMPARE(runOn(board(R"(, "connected": false)"), "get A"_s),
                 (BenchRun{3, "", "appvantor: A: getValue failed: the simulated board is unplugged\n"}));
    }

    void setSetsAllAtOnceAndWaitsForPulses()
    {
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        QCOMPARE(runOn(board(), "--trace %1 set A=ON B=PULSE:60 SET=700"_s.arg(trace)), (BenchRun{0}));
        QCOMPARE(lastLevels(trace), "1 0 1 0 700 700"_s);
    }

    /// The plugin refuses to write what is read.
    void theGuardsOfThePluginHold()
    {
        QCOMPARE(runOn(board(), "set R=ON A=ON"_s),
                 (BenchRun{1, "", "appvantor: R: setValue failed: the command refused to run\n"}));
    }

    void whatBlinksEndsWithSetUnlessItIsKept()
    {
        QCOMPARE(runOn(board(), "set A=BLINK:20:50 SET=700"_s),
                 (BenchRun{0, "",
                           "appvantor: A blinks no more: that ends with \"set\"; --for SECONDS keeps it "
                           "going\n"}));
        QCOMPARE(runOn(board(), "set A=BLINK:20:0 B=BLINK:20:100"_s), (BenchRun{0})); // steady
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        QCOMPARE(runOn(board(), "--trace %1 set A=BLINK:20:50 --for 0.1"_s.arg(trace)), (BenchRun{0}));
        QVERIFY2(contentOf(trace).count("\n1!") >= 3, contentOf(trace).constData());
    }

    void offSwitchesOffAllThatIsDriven()
    {
        const QString lines = R"("lines": [ {"name": "a", "level": 1},
                                            {"name": "b", "kind": "analog", "direction": "out", "level": 9},
                                            {"name": "c", "direction": "in", "level": 1} ])"_s;
        const QString channel = R"({"id": "%1", "value": [ {"id": "direction", "value": "%2"},
                                                            {"id": "link", "value": "%3"} ]})"_s;
        const QString file = boardFile(lines.toUtf8(), QStringList{channel.arg("A"_s, "out"_s, "a"_s),
                                                                   channel.arg("B"_s, "out"_s, "b"_s),
                                                                   channel.arg("C"_s, "in"_s, "c"_s)}
                                                           .join(QLatin1Char(','))
                                                           .toUtf8());
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        QCOMPARE(runOn(file, "--trace %1 off"_s.arg(trace)), (BenchRun{0}));
        QCOMPARE(lastLevels(trace), "0 0 1"_s);
    }

    void aChannelThatCannotBeSwitchedOffIsTold()
    {
        QCOMPARE(
            runOn(board(R"(, "faults": [ {"kind": "refused", "line": "b"} ])"), "off"_s),
            (BenchRun{1, "",
                      "appvantor: B: setValue failed: the board refuses \"setValues\" of channel \"b\"\n"}));
    }

    void everythingIsOffAtTheEnd_data()
    {
        const Rows<QString, int> row("words", "status");
        row("run", "run setValue channel=A state=ON", 0);
        row("an order that failed", "run setValue channel=R state=ON", 1);
        row("an order that is none", "run nosuch", 2);
        row("set", "set A=ON B=BLINK:20:50 SET=9", 0);
        row("shell", "shell", 0);
        row("picture", "panel --screenshot %1.png", 0);
    }

    void everythingIsOffAtTheEnd()
    {
        QFETCH(QString, words);
        QFETCH(int, status);
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        const QString command = words.contains(QLatin1Char('%')) ? words.arg(trace) : words;
        const BenchRun run = runBench(
            QStringList{"--config"_s, board(), "--trace"_s, trace} + command.split(QLatin1Char(' ')) +
                QStringList{"--off-at-end"_s},
            "setValue channel=A state=ON\nsetValue channel=B state=BLINK duration=20 dutyCycle=50\n");
        QCOMPARE(run.status, status);
        QVERIFY2(lastLevels(trace).startsWith("0 0 "_s), qPrintable(lastLevels(trace)));
        QVERIFY2(lastLevels(trace).contains(" 0"_s), qPrintable(lastLevels(trace)));
    }

    void everythingIsOffAfterASignal_data()
    {
        const Rows<QString, int> row("words", "number");
        for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
            for (const char* words : {"set A=ON B=BLINK:20:50 --for 1000", "set A=PULSE:60000", "shell",
                                      "run setValue channel=A state=ON --for 1000"}) {
                row(QByteArray(words) + ": " + QByteArray::number(number), words, number);
            }
        }
    }

    void everythingIsOffAfterASignal()
    {
        QFETCH(QString, words);
        QFETCH(int, number);
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        BenchProcess bench(QStringList{"--config"_s, board(), "--trace"_s, trace} +
                           words.split(QLatin1Char(' ')) + QStringList{"--off-at-end"_s});
        bench.process().write("setValue channel=A state=ON\n");
        QTRY_VERIFY(contentOf(trace).contains("\n1!"));
        bench.send(number);
        bench.end();
        QVERIFY(isTraceComplete(trace));
        QVERIFY2(lastLevels(trace).startsWith("0 0 "_s), qPrintable(lastLevels(trace)));
    }

    void aReaderThatIsGoneLeavesNothingOn()
    {
        const BenchRun run = runScript(
            "{ \"$BENCH\" --trace t.vcd shell --off-at-end; } < <(echo setValue channel=DOOR state=ON;\n"
            "yes getValue channel=DOOR) | head -n 1; grep '#' -A1 t.vcd | tail -n 2 | grep -x 0."_s);
        QCOMPARE(run.status, 0);
    }

    void watchTellsChangesOnly_data()
    {
        const Rows<QString, QStringList> row("options", "changes");
        row("both", "", {"R=ON"_s, "R=OFF"_s});
        row("both by name", "--edge both", {"R=ON"_s, "R=OFF"_s});
        row("rising", "--edge rising", {"R=ON"_s});
        row("falling", "--edge falling", {"R=OFF"_s});
    }

    /// The pulse of the board's own makes the changes: a ramp that steps through half of its levels.
    void watchTellsChangesOnly()
    {
        QFETCH(QString, options);
        QFETCH(QStringList, changes);
        const QString file = boardFile(
            R"("lines": [ {"name": "w", "kind": "analog",
                           "waveform": {"shape": "ramp", "low": 0, "high": 65535, "periodMs": 1000, "intervalMs": 250}},
                          {"name": "r"} ],
               "wires": [ {"from": "w", "to": "r"} ])",
            R"({"id": "R", "value": [ {"id": "type", "value": "digitalOutput"}, {"id": "direction", "value": "in"}, {"id": "link", "value": "r"} ]})");
        const BenchRun run =
            runOn(file, "watch R --count %1 %2"_s.arg(changes.size()).arg(options).trimmed());
        QCOMPARE(run, (BenchRun{0, run.output}));
        QStringList seen;
        for (const QString& line : run.lines()) {
            QVERIFY2(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d\\.\\d{6} "_s).match(line).hasMatch(),
                     qPrintable(line));
            seen.append(line.section(QLatin1Char(' '), 1));
        }
        QCOMPARE(seen, changes);
    }

    void watchTellsProgramsTheSameEvents()
    {
        const BenchRun run = runBench("--json watch TEMPERATURE ALARM --count 2"_words);
        QCOMPARE(run.status, 0);
        QStringList told;
        for (const QJsonObject& line : run.json()) {
            told.append(line.value("type"_s).toString() + QLatin1Char(' ') +
                        line.value("channel"_s).toString());
        }
        QCOMPARE(told, (QStringList{"event TEMPERATURE"_s, "event TEMPERATURE"_s, "result TEMPERATURE"_s,
                                    "result ALARM"_s}));
        QVERIFY(run.json().first().value("results"_s).toObject().value("lastValue"_s).toInt() > 32768);
    }

    void watchEndsAtItsTimeLimit_data()
    {
        const Rows<QString, QByteArray> row("options", "errors");
        row("count", " --count 3", "0 of 3 changes seen");
        row("no count", "", "0 changes seen");
    }

    void watchEndsAtItsTimeLimit()
    {
        QFETCH(QString, options);
        QFETCH(QByteArray, errors);
        QCOMPARE(runOn(board(), "watch R --timeout 0.1"_s + options),
                 (BenchRun{1, "", "appvantor: the time is up: " + errors + '\n'}));
    }

    void watchTellsProgramsOfItsTimeLimit()
    {
        const BenchRun run = runBench("--json watch RUNNING --timeout 0"_words);
        QCOMPARE(run.status, 1);
        QCOMPARE(run.lines().last(),
                 R"({"type":"failure","kind":"timeIsUp","reason":"the time is up: 0 changes seen"})"_s);
    }

    void whatCannotBeWatchedEndsTheWatch()
    {
        QCOMPARE(
            runOn(board(R"(, "faults": [ {"kind": "refused", "line": "b"} ])"), "watch A B"_s),
            (BenchRun{1, "",
                      "appvantor: B: startListening failed: the board refuses \"listenEvents\" of channel "
                      "\"b\"\n"}));
    }

    void aSignalEndsAWatch_data()
    {
        const Rows<QString, int> row("options", "status");
        row("without a count", "", 0);
        row("before the count", " --count 1000", 1);
    }

    void aSignalEndsAWatch()
    {
        QFETCH(QString, options);
        QFETCH(int, status);
        BenchProcess bench(("watch TEMPERATURE"_s + options).split(QLatin1Char(' ')));
        QVERIFY(bench.waitForOutput("TEMPERATURE="));
        bench.send(SIGINT);
        const BenchRun run = bench.end();
        QCOMPARE(run, (BenchRun{status, run.output}));
    }
};

QTEST_GUILESS_MAIN(TestVerbs)
#include "test_verbs.moc"
