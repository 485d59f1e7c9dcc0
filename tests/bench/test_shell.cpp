#include "bench_process.h"
#include "literals.h"

#include <QtTest>

namespace {

BenchRun runShell(const QByteArray& lines, const QStringList& options = {"--json"_s})
{
    return runBench(options + QStringList{"shell"_s}, lines);
}

/// The readings of all "getValue" orders of a run, in order.
QVector<int> readings(const BenchRun& run)
{
    QVector<int> values;
    for (const QJsonObject& line : run.json()) {
        if (line.value(QLatin1String("command")) == QLatin1String("getValue")) {
            values.append(
                line.value(QLatin1String("results")).toObject().value(QLatin1String("value")).toInt(-1));
        }
    }
    return values;
}

/// The events of order number, as "value/lastValue".
QStringList events(const BenchRun& run, int number)
{
    QStringList texts;
    for (const QJsonObject& line : run.json()) {
        if (line.contains(QLatin1String("event")) && line.value(QLatin1String("order")).toInt() == number) {
            const QJsonObject event = line.value(QLatin1String("event")).toObject();
            texts.append(event.value(QLatin1String("value")).toVariant().toString() + QLatin1Char('/') +
                         event.value(QLatin1String("lastValue")).toVariant().toString());
        }
    }
    return texts;
}

/// Numbers and commands of the orders that ended, in order.
QStringList ended(const BenchRun& run)
{
    QStringList texts;
    for (const QJsonObject& line : run.json()) {
        if (line.contains(QLatin1String("success"))) {
            texts.append("%1 %2"_s.arg(line.value(QLatin1String("order")).toInt())
                             .arg(line.value(QLatin1String("command")).toString()));
        }
    }
    return texts;
}

} // namespace

/// The subcommand "shell" with a script on its standard input.
class TestShell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void switchingTwiceBringsTheFirstLevelBack();
    void drivingAWiredLineMakesTheEventsOfTheWiring();
    void aPulseHoldsTheNextLineBack();
    void anOrderBesideDoesNotHoldTheNextLineBack();
    void aStoppedPulseLeavesTheLineOn();
    void blinkIsReplacedByOn();
    void twoListenersOnOneChannelHearTheSame();
    void aListenerThatWasStoppedHearsNoMore();
    void stoppingAnOrderThatHasEndedDoesNothing();
    void theStopNameEndsTheLatestListener();
    void theStopNameWithAChannelEndsTheListenerOfThatChannel();
    void theStopNameEndsARunningPulse();
    void aStopNameThatFindsNothingFails();
    void waitHoldsTheNextLineBackUntilTheOrderEnds();
    void remarksAndEmptyLinesAreLeftOut();
    void whatRunsAtTheEndIsStoppedProperly();
    void quitLeavesTheRestOut();
    void echoShowsEachLine();
    void helpListsTheShellsOwnWords();
    void channelsAndCommandsAreListedInAShell();
    void aWrongLineIsToldAndTheRestGoesOn_data();
    void aWrongLineIsToldAndTheRestGoesOn();
    void aLineWithAZeroCharacterIsTakenAndToldWhole();
    void aFailedOrderMakesStatus1();
    void theLastLineNeedsNoLineEnd();
    void aListHoldsTheNextLineBack();
    void aPulseOfNoDurationEndsAtOnce();
    void malformedRepliesInBetweenDoNotEndAListener();
    void aLineWithoutEndIsRefused();
    void inputIsReadNoFurtherAheadThanNeeded();
};

void TestShell::switchingTwiceBringsTheFirstLevelBack()
{
    const BenchRun run =
        runShell("getValue channel=START\nswitchValue channel=START\ngetValue channel=START\n"
                 "switchValue channel=START\ngetValue channel=START\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(readings(run), QVector<int>({0, 1, 0}));
}

void TestShell::drivingAWiredLineMakesTheEventsOfTheWiring()
{
    const BenchRun run = runShell("startListening channel=RUNNING edge=RE\n"
                                  "setValue channel=START state=ON\nsleep 250\n"
                                  "setValue channel=START state=OFF\nsleep 250\n"
                                  "setValue channel=START state=PULSE duration=300\nsleep 250\n"
                                  "setValue channel=START state=BLINK duration=400 dutyCycle=50\nsleep 900\n"
                                  "setValue channel=START state=OFF\nsleep 250\nstop 1\n");
    QCOMPARE(run.status, 0);
    const QStringList up = {"true/1"_s, "false/0"_s};
    QCOMPARE(events(run, 1), QStringList{"false/0"_s} + up + up + up + up + up);
}

void TestShell::aPulseHoldsTheNextLineBack()
{
    const BenchRun run =
        runShell("setValue channel=START state=PULSE duration=100\ngetValue channel=START\n");
    QCOMPARE(readings(run), QVector<int>({0}));
}

void TestShell::anOrderBesideDoesNotHoldTheNextLineBack()
{
    const BenchRun run =
        runShell("setValue channel=START state=PULSE duration=200 &\ngetValue channel=START\n"
                 "wait 1\ngetValue channel=START\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(readings(run), QVector<int>({1, 0}));
}

void TestShell::aStoppedPulseLeavesTheLineOn()
{
    const BenchRun run = runShell("setValue channel=START state=PULSE duration=10000 &\nsleep 50\nstop 1\n"
                                  "getValue channel=START\n");
    QCOMPARE(run.status, 1);
    QCOMPARE(readings(run), QVector<int>({1}));
    QVERIFY(run.errors.contains("[1] setValue failed: stopped before it was complete"));
}

void TestShell::blinkIsReplacedByOn()
{
    const BenchRun run =
        runShell("setValue channel=DOOR state=BLINK duration=40 dutyCycle=50\n"
                 "setValue channel=DOOR state=ON\nstartListening channel=DOOR\nsleep 150\nstop 3\n");
    QCOMPARE(events(run, 3), QStringList({"1/1"_s}));
}

void TestShell::twoListenersOnOneChannelHearTheSame()
{
    const BenchRun run =
        runShell("startListening channel=DOOR\nstartListening channel=DOOR edge=HL\n"
                 "setValue channel=DOOR state=ON\nsetValue channel=DOOR state=OFF\nsleep 20\n");
    QCOMPARE(events(run, 1), QStringList({"0/0"_s, "1/1"_s, "0/0"_s}));
    QCOMPARE(events(run, 2), QStringList({"false/0"_s, "true/1"_s, "false/0"_s}));
}

void TestShell::aListenerThatWasStoppedHearsNoMore()
{
    const BenchRun run =
        runShell("startListening channel=DOOR\nsleep 20\nstop 1\nsetValue channel=DOOR state=ON\n");
    QCOMPARE(events(run, 1), QStringList({"0/0"_s}));
}

void TestShell::stoppingAnOrderThatHasEndedDoesNothing()
{
    const BenchRun run = runShell("startListening channel=DOOR\nsleep 20\nstop 1\nstop 1\nwait 1\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output.count("\"success\":true"), 1);
}

void TestShell::theStopNameEndsTheLatestListener()
{
    const BenchRun run = runShell("startListening channel=DOOR\nlistenToAll\nstopListening\nstopListening\n"
                                  "setValue channel=DOOR state=ON\nsleep 20\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(ended(run), QStringList({"2 listenToAll"_s, "3 stopListening"_s, "1 startListening"_s,
                                      "4 stopListening"_s, "5 setValue"_s}));
    QVERIFY(runShell("startListening channel=DOOR\nstopListening\n", {})
                .output.endsWith("\n[2] stopListening: done\n"));
}

void TestShell::theStopNameWithAChannelEndsTheListenerOfThatChannel()
{
    const BenchRun run = runShell("startListening channel=DOOR\nstartListening channel=RUNNING\n"
                                  "stopListening channel=DOOR\nsetValue channel=DOOR state=ON\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(ended(run).mid(0, 2), QStringList({"1 startListening"_s, "3 stopListening"_s}));
}

void TestShell::theStopNameEndsARunningPulse()
{
    const BenchRun run = runShell("setValue channel=START state=PULSE duration=60000 &\nsleep 50\n"
                                  "stopTheCommand channel=START\n");
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors, QByteArray("appvantor: [1] setValue failed: stopped before it was complete\n"));
    QCOMPARE(ended(run), QStringList({"1 setValue"_s, "2 stopTheCommand"_s}));
}

void TestShell::aStopNameThatFindsNothingFails()
{
    const BenchRun run = runShell("startListening channel=DOOR\nstopTheCommand\n"
                                  "stopListening channel=ALARM\n");
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors,
             QByteArray("appvantor: [2] stopTheCommand failed: no running order to stop\n"
                        "appvantor: [3] stopListening failed: no running order with these arguments to "
                        "stop\n"));
}

void TestShell::waitHoldsTheNextLineBackUntilTheOrderEnds()
{
    const BenchRun run =
        runShell("setValue channel=START state=PULSE duration=100 &\nwait 1\ngetValue channel=START\n");
    QCOMPARE(readings(run), QVector<int>({0}));
}

void TestShell::remarksAndEmptyLinesAreLeftOut()
{
    const BenchRun run = runShell("# getValue channel=START\n\n   \n  # more\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output + run.errors, QByteArray());
}

void TestShell::whatRunsAtTheEndIsStoppedProperly()
{
    const BenchRun run =
        runShell("listenToAll\nsetValue channel=START state=PULSE duration=60000 &\nsleep 20\n");
    QCOMPARE(run.status, 1); // the pulse did not come to its end
    QCOMPARE(run.json().at(run.json().size() - 2).value(QLatin1String("success")).toBool(), true);
    QCOMPARE(run.json().last().value(QLatin1String("success")).toBool(true), false);
}

void TestShell::quitLeavesTheRestOut()
{
    const BenchRun run = runShell("quit\ngetValue channel=START\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QByteArray());
}

void TestShell::echoShowsEachLine()
{
    const BenchRun run = runBench({"shell"_s, "--echo"_s}, "# remark\ngetValue channel=START\n");
    QCOMPARE(run.output, QByteArray("> # remark\n> getValue channel=START\n[1] getValue: value=0\n"));
}

void TestShell::helpListsTheShellsOwnWords()
{
    const BenchRun run = runShell("help\n", {});
    for (const char* word : {"stop N", "stopTheCommand         Stops the latest running setValue",
                             "stopListening          Stops the latest running startListening or listenToAll",
                             "wait N", "sleep MS", "quit", "COMMAND NAME=VALUE", "commands, channels"}) {
        QVERIFY2(run.output.contains(word), word);
    }
}

void TestShell::channelsAndCommandsAreListedInAShell()
{
    const BenchRun run = runShell("setValue channel=START state=ON\nchannels\ncommands\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(run.json().size(), 1 + 10 + 6);
    QCOMPARE(run.json().at(1).value(QLatin1String("value")).toInt(), 1);
}

void TestShell::aWrongLineIsToldAndTheRestGoesOn_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* line, const char* message) {
        QTest::newRow(line) << QByteArray(line) << QByteArray(message);
    };
    row("juggle", "unknown command \"juggle\"; the tool has: ");
    row("getValue START", "expected NAME=VALUE, found \"START\"");
    row("stop", "expected \"stop\" and one number");
    row("stop one", "expected the number of an order, 1 to 0, found \"one\"");
    row("wait 7", "expected the number of an order, 1 to 0, found \"7\"");
    row("sleep -1", "expected milliseconds from 0 to 86400000, found \"-1\"");
    row("sleep 99999999999", "expected milliseconds from 0 to 86400000, found \"99999999999\"");
    row("help me", "expected nothing after \"help\"");
    row("getValue channel=\"START", "expected a closing \"");
    row("init channels=[1", "expected a closing bracket");
}

void TestShell::aWrongLineIsToldAndTheRestGoesOn()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, message);
    const BenchRun run = runShell(line + "\ngetValue channel=ALARM\n");
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.startsWith("appvantor: " + message), run.errors.constData());
    QCOMPARE(readings(run), QVector<int>({1}));
}

void TestShell::aLineWithAZeroCharacterIsTakenAndToldWhole()
{
    const QByteArray line = QByteArrayLiteral("stop 1\0zero");
    const QByteArray refusal =
        QByteArrayLiteral("appvantor: expected the number of an order, 1 to 0, found \"1\0zero\"\n");
    const BenchRun run = runBench({"shell"_s}, line + '\n' + line);
    QCOMPARE(run.status, 2);
    QCOMPARE(run.errors, refusal + refusal);
}

void TestShell::aFailedOrderMakesStatus1()
{
    const BenchRun run = runShell("setValue channel=ALARM state=ON\ngetValue channel=ALARM\n");
    QCOMPARE(run.status, 1);
    QCOMPARE(readings(run), QVector<int>({1}));
}

void TestShell::theLastLineNeedsNoLineEnd()
{
    QCOMPARE(readings(runShell("getValue channel=ALARM")), QVector<int>({1}));
}

void TestShell::aListHoldsTheNextLineBack()
{
    const BenchRun run =
        runShell("channels\ngetValue channel=SLOW\n", {"--config"_s, example("fault_injection.json"_s)});
    QCOMPARE(run.lines().last(), "[1] getValue: value=0"_s);
    QCOMPARE(run.lines().size(), 1 + 5 + 1);
}

void TestShell::aPulseOfNoDurationEndsAtOnce()
{
    const BenchRun run =
        runShell("startListening channel=DOOR\nsetValue channel=DOOR state=PULSE duration=0\n");
    QCOMPARE(run.status, 0);
    QCOMPARE(events(run, 1), QStringList({"0/0"_s, "1/1"_s, "0/0"_s}));
}

void TestShell::malformedRepliesInBetweenDoNotEndAListener()
{
    const QString file = boardFile(
        R"("lines": [ {"name": "a"} ], "faults": [ {"kind": "wrong", "instruction": "listenEvents"} ])",
        R"({"id": "A", "value": [ {"id": "link", "value": "a"} ]})");
    const BenchRun run =
        runShell("startListening channel=A\nsleep 20\nstop 1\n", {"--config"_s, file, "--json"_s});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors.count("ERROR: reply does not contain values"), 1);
    QVERIFY(run.errors.endsWith("\nappvantor: [1] startListening rejected replies of the device: 1\n"));
    QVERIFY(run.output.endsWith(R"("success":true,"results":{"lastValue":null,"value":null},"rejected":1})"
                                "\n"));
}

void TestShell::aLineWithoutEndIsRefused()
{
    const BenchRun run = runShell(QByteArray(2 << 20, 'x'));
    QCOMPARE(run.status, 2);
    QVERIFY2(run.errors.contains("standard input: expected lines of at most 1048576 bytes"),
             run.errors.left(200));
}

void TestShell::inputIsReadNoFurtherAheadThanNeeded()
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

QTEST_GUILESS_MAIN(TestShell)
#include "test_shell.moc"
