#include "bench_process.h"

#include <QtTest>

#include <csignal>

/// Ctrl-C.
class TestSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ctrlCStopsAListeningOrderProperly_data();
    void ctrlCStopsAListeningOrderProperly();
    void ctrlCStopsAPulseWithAReasonAndEndsTheScript();
    void ctrlCEndsAStayOfTheBench();
    void ctrlCLeavesTheRestOfAScriptOut();
    void ctrlCInAnIdleShellEndsIt();
};

void TestSignals::ctrlCStopsAListeningOrderProperly_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void TestSignals::ctrlCStopsAListeningOrderProperly()
{
    QFETCH(int, number);
    BenchProcess bench({QStringLiteral("--json"), QStringLiteral("run"), QStringLiteral("startListening"),
                        QStringLiteral("channel=START"), QStringLiteral("edge=RE")});
    QVERIFY(bench.waitForOutput("\"event\""));
    bench.send(number);
    const BenchRun run = bench.end();
    QCOMPARE(run.status, 0);
    QVERIFY(run.json().last().value(QLatin1String("success")).toBool());
}

void TestSignals::ctrlCStopsAPulseWithAReasonAndEndsTheScript()
{
    BenchProcess bench({QStringLiteral("shell"), QStringLiteral("--echo")});
    bench.process().write("setValue channel=START state=PULSE duration=60000\ngetValue channel=START\n");
    QVERIFY(bench.waitForOutput("PULSE"));
    bench.send(SIGINT);
    const BenchRun run = bench.end();
    QCOMPARE(run.status, 1);
    QVERIFY(run.errors.contains("setValue failed: stopped before it was complete"));
    QVERIFY(!run.output.contains("getValue"));
}

void TestSignals::ctrlCEndsAStayOfTheBench()
{
    BenchProcess bench({QStringLiteral("run"), QStringLiteral("setValue"), QStringLiteral("channel=START"),
                        QStringLiteral("state=ON"), QStringLiteral("--for"), QStringLiteral("1000")});
    QVERIFY(bench.waitForOutput("doneOk=true"));
    bench.send(SIGINT);
    QCOMPARE(bench.end().status, 0);
}

void TestSignals::ctrlCLeavesTheRestOfAScriptOut()
{
    BenchProcess bench({QStringLiteral("shell"), QStringLiteral("--echo")});
    bench.process().write("sleep 80000000\ngetValue channel=ALARM\n");
    QVERIFY(bench.waitForOutput("> sleep"));
    bench.send(SIGINT);
    const BenchRun run = bench.end();
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QByteArray("> sleep 80000000\n"));
}

void TestSignals::ctrlCInAnIdleShellEndsIt()
{
    BenchProcess bench({QStringLiteral("shell")});
    bench.process().write("listenToAll\n");
    QVERIFY(bench.waitForOutput("value="));
    bench.send(SIGINT);
    const BenchRun run = bench.end();
    QCOMPARE(run.status, 0);
    QVERIFY(run.output.contains("[1] listenToAll: value="));
}

QTEST_GUILESS_MAIN(TestSignals)
#include "test_signals.moc"
