#include "bench_process.h"
#include "literals.h"
#include "rows.h"

#include <QRegularExpression>

namespace {

BenchRun runShell(const QByteArray& lines, const QStringList& options = {})
{
    return runBench(QStringList{"shell"_s} + options, lines);
}

} // namespace

/// The subcommand "shell" with a script on its standard input.
class TestShell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSessionGoesItsWay_data()
    {
        const Rows<int, QByteArray, QString> row("status", "errors", "session");
        const QByteArray stopped = "setValue failed: stopped before it was complete\n";
        row("switching twice brings the first level back", 0, "", R"(
> switchValue channel=START
[1] switchValue: doneOk=true
> getValue channel=START
[2] getValue: value=1
> switchValue channel=START
[3] switchValue: doneOk=true
> getValue channel=START
[4] getValue: value=0
)");
        row("a pulse holds the next line back", 0, "", R"(
> setValue channel=START state=PULSE duration=100
[1] setValue: doneOk=true
> getValue channel=START
[2] getValue: value=0
)");
        row("an order beside does not, until it is waited for", 0, "", R"(
> setValue channel=START state=PULSE duration=200 &
[1] setValue runs; "stop 1" ends it
> getValue channel=START
[2] getValue: value=1
> wait 1
[1] setValue: doneOk=true
> getValue channel=START
[3] getValue: value=0
)");
        row("a stopped pulse leaves the line on", 1, "<stdin>:1: [1] " + stopped, R"(
> setValue channel=START state=PULSE duration=60000 &
[1] setValue runs; "stop 1" ends it
> sleep 50
> stop 1
> getValue channel=START
[2] getValue: value=1
)");
        row("a pulse of no duration ends at once", 0, "", R"(
> startListening channel=DOOR
[1] startListening runs; "stop 1" ends it
[1] TIME  lastValue=0 value=0
> setValue channel=DOOR state=PULSE duration=0
[1] TIME  lastValue=1 value=1
[1] TIME  lastValue=0 value=0
[2] setValue: doneOk=true
[1] startListening: lastValue=0 value=0
)");
        row("blinking is replaced by on", 0, "", R"(
> setValue channel=DOOR state=BLINK duration=40 dutyCycle=50
[1] setValue: doneOk=true
> setValue channel=DOOR state=ON
[2] setValue: doneOk=true
> startListening channel=DOOR
[3] startListening runs; "stop 3" ends it
[3] TIME  lastValue=1 value=1
> sleep 150
> stop 3
[3] startListening: lastValue=1 value=1
)");
        row("two listeners on one channel hear the same", 0, "", R"(
> startListening channel=DOOR
[1] startListening runs; "stop 1" ends it
[1] TIME  lastValue=0 value=0
> startListening channel=DOOR edge=HL
[2] startListening runs; "stop 2" ends it
[2] TIME  lastValue=0 value=false
> setValue channel=DOOR state=ON
[1] TIME  lastValue=1 value=1
[2] TIME  lastValue=1 value=true
[3] setValue: doneOk=true
[1] startListening: lastValue=1 value=1
[2] startListening: lastValue=1 value=true
)");
        row("a listener that was stopped hears no more, nor ends again", 0, "", R"(
> startListening channel=DOOR
[1] startListening runs; "stop 1" ends it
[1] TIME  lastValue=0 value=0
> sleep 20
> stop 1
[1] startListening: lastValue=0 value=0
> setValue channel=DOOR state=ON
[2] setValue: doneOk=true
> stop 1
[1] has ended already
> wait 1
)");
        row("the stop name ends the latest listener", 0, "", R"(
> startListening channel=DOOR
[1] startListening runs; "stop 1" ends it
[1] TIME  lastValue=0 value=0
> listenToAll
[2] listenToAll runs; "stop 2" ends it
[2] TIME  value=96
> stopListening
[2] listenToAll: value=96
[3] stopListening: done
> stopListening
[1] startListening: lastValue=0 value=0
[4] stopListening: done
> setValue channel=DOOR state=ON
[5] setValue: doneOk=true
> sleep 20
)");
        row("the stop name with a channel ends the listener of that channel", 0, "", R"(
> startListening channel=DOOR
[1] startListening runs; "stop 1" ends it
[1] TIME  lastValue=0 value=0
> startListening channel=RUNNING
[2] startListening runs; "stop 2" ends it
[2] TIME  lastValue=0 value=0
> stopListening channel=DOOR
[1] startListening: lastValue=0 value=0
[3] stopListening: done
[2] startListening: lastValue=0 value=0
)");
        row("the stop name ends a running pulse", 1, "<stdin>:1: [1] " + stopped, R"(
> setValue channel=START state=PULSE duration=60000 &
[1] setValue runs; "stop 1" ends it
> sleep 50
> stopTheCommand channel=START
[2] stopTheCommand: done
)");
        row("a stop name that finds nothing fails", 1,
            "<stdin>:2: [2] stopTheCommand failed: no running order to stop\n"
            "appvantor: <stdin>:3: [3] stopListening failed: no running order with these arguments to stop\n",
            R"(
> startListening channel=DOOR
[1] startListening runs; "stop 1" ends it
[1] TIME  lastValue=0 value=0
> stopTheCommand
> stopListening channel=ALARM
[1] startListening: lastValue=0 value=0
)");
        row("what runs at the end is stopped, and a pulse told of", 1,
            "still driven at the end: START (pulse)\nappvantor: <stdin>:2: [2] " + stopped, R"(
> listenToAll
[1] listenToAll runs; "stop 1" ends it
[1] TIME  value=96
> setValue channel=START state=PULSE duration=60000 &
[2] setValue runs; "stop 2" ends it
[1] TIME  value=97
> sleep 20
[1] listenToAll: value=97
)");
        row("a failed order makes status 1, and the rest goes on where it is to", 1,
            "<stdin>:1: [1] setValue failed: the command refused to run\n", R"(
> setValue channel=ALARM state=ON
> getValue channel=ALARM
[2] getValue: value=1
)");
        row("a line that blinks at the end is told of", 0, "still driven at the end: DOOR (blinks)\n", R"(
> setValue channel=DOOR state=BLINK duration=1000 dutyCycle=50
[1] setValue: doneOk=true
> setValue channel=STOP state=BLINK duration=1000 dutyCycle=50
[2] setValue: doneOk=true
> switchValue channel=STOP
[3] switchValue: doneOk=true
> setValue channel=START state=BLINK duration=1000 dutyCycle=100
[4] setValue: doneOk=true
)");
        row("a name stands for its channel", 0, "", R"(
> let LAMP = DOOR
> let SAME=LAMP
> setValue channel=SAME state=ON
[1] setValue: doneOk=true
> expect LAMP=ON
LAMP=ON
> getValue channel=DOOR
[2] getValue: value=1
)");
        row("channels are set and read by their names", 0, "", R"(
> let LAMP = DOOR
> set LAMP=ON SETPOINT=700 START=PULSE:20
[1] setValue: doneOk=true
[2] setValue: doneOk=true
[3] setValue: doneOk=true
> get LAMP START SETPOINT
DOOR=ON
START=OFF
SETPOINT=700
> set START=BLINK:1000:50
[7] setValue: doneOk=true
> off
[8] setValue: doneOk=true
[9] setValue: doneOk=true
[10] setValue: doneOk=true
[11] setValue: doneOk=true
[12] setValue: doneOk=true
> get DOOR START SETPOINT
DOOR=OFF
START=OFF
SETPOINT=0
> set START=PULSE:1 &
[16] setValue runs; "stop 16" ends it
> wait 16
[16] setValue: doneOk=true
)");
        row("a level is expected at once", 1, "<stdin>:4: expected DOOR=ON, found OFF\n", R"(
> expect ALARM=1
ALARM=ON
> expect SETPOINT=0
SETPOINT=0
> expect READY=on within 0
READY=ON
> expect DOOR=ON
> expect DOOR=0 within 60000
DOOR=OFF
)");
        row("an order's number goes up to the latest one's", 2,
            "<stdin>:2: expected the number of an order, 1 to 1, found \"2\"\n", R"(
> getValue channel=ALARM
[1] getValue: value=1
> stop 2
)");
        row("a level is waited for", 1, "<stdin>:2: expected RUNNING=ON within 50 ms, found OFF\n", R"(
> setValue channel=START state=ON
[1] setValue: doneOk=true
> expect RUNNING=ON within 50
> expect RUNNING=ON within 60000
RUNNING=ON
> setValue channel=START state=OFF
[2] setValue: doneOk=true
> expect RUNNING=OFF within 60000
RUNNING=OFF
)");
        row("remarks and empty lines are left out", 0, "",
            "\n> # getValue channel=START\n> \n>    \n>   # more\n");
    }

    /// What the bench is given are the lines after "> ", the last one without an end.
    void aSessionGoesItsWay()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, errors);
        QFETCH(QString, session);
        QStringList lines = session.split(QLatin1Char('\n')).filter(QRegularExpression("^> "_s));
        lines.replaceInStrings(QRegularExpression("^> "_s), QString());
        BenchRun run =
            runShell(lines.join(QLatin1Char('\n')).toUtf8(), "--echo --keep-going --log-level off"_words);
        const QRegularExpression time("\\d\\d:\\d\\d:\\d\\d\\.\\d{6}"_s);
        run.output = '\n' + QString::fromUtf8(run.output).replace(time, "TIME"_s).toUtf8();
        QCOMPARE(run,
                 (BenchRun{status, session.toUtf8(), errors.isEmpty() ? errors : "appvantor: " + errors}));
    }

    void drivingAWiredLineMakesTheEventsOfTheWiring()
    {
        const BenchRun run =
            runShell("startListening channel=RUNNING edge=RE\n"
                     "setValue channel=START state=ON\nsleep 250\n"
                     "setValue channel=START state=OFF\nsleep 250\n"
                     "setValue channel=START state=PULSE duration=300\nsleep 250\n"
                     "setValue channel=START state=BLINK duration=400 dutyCycle=50\nsleep 900\n"
                     "setValue channel=START state=OFF\nsleep 250\nstop 1\n");
        QCOMPARE(run.status, 0);
        QStringList events = run.lines().filter(QRegularExpression("^\\[1\\] \\d"_s));
        events.replaceInStrings(QRegularExpression("^\\S+ \\S+  "_s), QString());
        QStringList expected = {"lastValue=0 value=false"_s};
        for (int round = 0; round < 5; ++round) {
            expected += {"lastValue=1 value=true"_s, "lastValue=0 value=false"_s};
        }
        QCOMPARE(events, expected);
    }

    void quitLeavesTheRestOut() { QCOMPARE(runShell("quit\ngetValue channel=START\n"), BenchRun{0}); }

    void helpListsTheShellsOwnWords()
    {
        const BenchRun run = runShell("help\n");
        for (const char* word :
             {"stop N", "expect CHANNEL=VALUE [within MS] ", "repeat N … end", "get CHANNEL…",
              "set CHANNEL=VALUE…", "off", "let NAME = CHANNEL",
              "stopTheCommand                   Stops the latest running setValue",
              "stopListening                    Stops the latest running startListening or listenToAll",
              "wait N", "sleep MS", "quit", "COMMAND NAME=VALUE", "commands", "channels"}) {
            QVERIFY2(run.output.contains(word), word);
        }
    }

    void channelsAndCommandsAreListedInAShell()
    {
        const BenchRun run = runShell("setValue channel=START state=ON\nchannels\ncommands\n", {"--json"_s});
        QCOMPARE(run.status, 0);
        QCOMPARE(run.json().size(), 1 + 10 + 6);
        QCOMPARE(run.json().at(1).value(QLatin1String("value")).toInt(), 1);
    }

    void aWrongLineIsToldWithItsPlace_data()
    {
        const Rows<QByteArray> row("message");
        row("juggle", "unknown command \"juggle\"; the tool has: ");
        row("wat DOOR", "unknown command \"wat\"; did you mean \"wait\"?");
        row("juggle DOOR", "unknown command \"juggle\"; \"help\" lists what there is");
        row("getValue START", "expected NAME=VALUE, found \"START\"");
        row("stop", "expected \"stop N\"");
        row("stop one", "expected the number of an order, of which there is none yet, found \"one\"");
        row("wait 7", "expected the number of an order, of which there is none yet, found \"7\"");
        row("sleep -1", "expected milliseconds from 0 to 86400000, found \"-1\"");
        row("sleep 99999999999", "expected milliseconds from 0 to 86400000, found \"99999999999\"");
        row("help me", "expected nothing after \"help\"");
        row("getValue channel=\"START", "expected a closing \"");
        row("init channels=[1", "expected a closing bracket");
        row("expect DOOR", "expected \"expect CHANNEL=VALUE [within MS]\"");
        row("expect DOOR=ON within", "expected \"expect CHANNEL=VALUE [within MS]\"");
        row("expect DOOR=ON for 5", "expected \"expect CHANNEL=VALUE [within MS]\"");
        row("expect DOOR=ON within -1", "expected milliseconds from 0 to 86400000, found \"-1\"");
        row("expect DOR=ON", "the tool has no channel \"DOR\"; did you mean \"DOOR\"?");
        row("expect DOOR=2", "channel \"DOOR\": expected ON or OFF, found \"2\"");
        row("expect SETPOINT=ON", "channel \"SETPOINT\": expected a number from 0 to 65535 or OFF");
        row("get", "expected \"get CHANNEL…\"");
        row("get DOOR NOWHERE", "the tool has no channel \"NOWHERE\"");
        row("set DOOR=ON DOOR", "expected CHANNEL=VALUE, found \"DOOR\"");
        row("set DOR=ON", "the tool has no channel \"DOR\"; did you mean \"DOOR\"?");
        row("set ALARM=PULSE", "channel \"ALARM\": expected ON, OFF, PULSE:MS, or BLINK:MS:PERCENT");
        row("off DOOR", "expected nothing after \"off\"");
        row("let LAMP", "expected \"let NAME = CHANNEL\"");
        row("let TWO WORDS = DOOR", "expected \"let NAME = CHANNEL\"");
        row("let LAMP = DOR", "the tool has no channel \"DOR\"; did you mean \"DOOR\"?");
        row("let STOP = DOOR", "\"STOP\" stands for the channel STOP already");
        row("end", "\"end\" without a \"repeat\"");
        row("repeat 2 times\nend", "expected \"repeat N\", N from 1 to 1000000");
    }

    /// The rows are called by the lines.
    void aWrongLineIsToldWithItsPlace()
    {
        QFETCH(QByteArray, message);
        const BenchRun run =
            runShell(QByteArray(QTest::currentDataTag()) + "\ngetValue channel=ALARM\n", {"--keep-going"_s});
        QVERIFY2(run.errors.startsWith("appvantor: <stdin>:1: " + message), run.errors.constData());
        QCOMPARE(run, (BenchRun{2, "[1] getValue: value=1\n", run.errors}));
    }

    void aLineWithAZeroCharacterIsTakenAndToldWhole()
    {
        const QByteArray line = QByteArrayLiteral("stop 1\0zero");
        const QByteArray refusal = QByteArrayLiteral(
            ": expected the number of an order, of which there is none yet, found \"1\0zero\"\n");
        QCOMPARE(runShell(line + '\n' + line, {"--keep-going"_s}),
                 (BenchRun{2, "", "appvantor: <stdin>:1" + refusal + "appvantor: <stdin>:2" + refusal}));
    }

    void aListHoldsTheNextLineBack()
    {
        const BenchRun run = runShell("channels\ngetValue channel=SLOW\n",
                                      {"--keep-going"_s, "--config"_s, example("fault_injection.json"_s)});
        QCOMPARE(run.lines().last(), "[1] getValue: value=0"_s);
        QCOMPARE(run.lines().size(), 1 + 5 + 1);
    }

    void malformedRepliesInBetweenDoNotEndAListener()
    {
        const QString file = boardFile(
            R"("lines": [ {"name": "a"} ], "faults": [ {"kind": "wrong", "instruction": "listenEvents"} ])",
            R"({"id": "A", "value": [ {"id": "link", "value": "a"} ]})");
        const BenchRun run =
            runShell("startListening channel=A\nsleep 20\nstop 1\n", {"--config"_s, file, "--json"_s});
        QCOMPARE(run.status, 0);
        QCOMPARE(run.errors.count("ERROR: reply does not contain values"), 1);
        QVERIFY(run.errors.endsWith(
            "\nappvantor: <stdin>:1: [1] startListening rejected replies of the device: 1\n"));
        QVERIFY(run.output.endsWith("\"results\":{\"lastValue\":null,\"value\":null},\"rejected\":1}\n"));
    }

    void aLineWithoutEndIsRefused()
    {
        QCOMPARE(runShell(QByteArray(2 << 20, 'x')),
                 (BenchRun{2, "", "appvantor: standard input: expected lines of at most 1048576 bytes\n"}));
    }

    void inputIsReadNoFurtherAheadThanNeeded()
    {
        BenchProcess bench({"shell"_s, "--echo"_s});
        bench.process().write("sleep 80000000\n");
        QVERIFY(bench.waitForOutput("sleep"));
        const QByteArray lines = QByteArray("sleep 80000000\n").repeated(100000);
        bench.process().write(lines);
        while (bench.process().waitForBytesWritten(1000)) {
        } // until nobody takes more
        QVERIFY(bench.process().bytesToWrite() > lines.size() / 2);
    }
};

QTEST_GUILESS_MAIN(TestShell)
#include "test_shell.moc"
