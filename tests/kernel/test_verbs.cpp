#include "bench_process.h"
#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

#include <QtTest>

#include <csignal>

namespace {

/// The lines 0 and 1 of chip are inputs, "button" and "door"; line 2 is the output "lamp".
QString configurationOn(const SimChip& chip)
{
    return temporaryFile(configurationOf({input("button"_s, chip.name(), 0), input("door"_s, chip.name(), 1),
                                          output("lamp"_s, chip.name(), 2)}));
}

/// Pulls button and door in turn, up and down, until bench has ended.
void pullUntilTheEnd(const SimChip& chip, BenchProcess* bench)
{
    for (int step = 0; bench->process().state() != QProcess::NotRunning; ++step) {
        chip.pull(step % 2, step / 2 % 2 == 0 ? 1 : 0);
        bench->process().waitForFinished(20);
    }
}

} // namespace

/// Channels by their names, on lines of the kernel: watch, set, off at the end, and expect.
class TestVerbs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void watchTellsTheEdgesThatAreAskedForInTheirOrder()
    {
        const SimChip chip("verbs"_s, 4);
        BenchProcess bench({"--config"_s, configurationOn(chip), "watch"_s, "button"_s, "door"_s, "--edge"_s,
                            "falling"_s, "--count"_s, "6"_s});
        QVERIFY(bench.waitUntilCaught(SIGINT));
        pullUntilTheEnd(chip, &bench);
        const BenchRun run = bench.end();
        QCOMPARE(run, (BenchRun{0, run.output}));
        const QStringList lines = run.lines();
        QCOMPARE(lines.size(), 6);
        QStringList sorted = lines;
        sorted.sort();
        QCOMPARE(lines, sorted); // they begin with their times
        for (int i = 0; i < lines.size(); ++i) {
            const bool isButton = lines.first().endsWith("button=OFF"_s) == (i % 2 == 0);
            QVERIFY2(lines.at(i).endsWith(isButton ? " button=OFF"_s : " door=OFF"_s),
                     run.output.constData());
        }
    }

    void watchEndsAtItsTimeLimit()
    {
        const SimChip chip("verbs"_s, 4);
        QCOMPARE(runBench({"--config"_s, configurationOn(chip), "watch"_s, "button"_s, "--count"_s, "1"_s,
                           "--timeout"_s, "0.2"_s}),
                 (BenchRun{1, "", "appvantor: the time is up: 0 of 1 changes seen\n"}));
    }

    void whatIsSetIsOnTheWireAndOffAtTheEnd()
    {
        const SimChip chip("verbs"_s, 4);
        const QString trace = temporaryFile(QByteArray(), "vcd"_s);
        BenchProcess bench({"--config"_s, configurationOn(chip), "--trace"_s, trace, "set"_s,
                            "lamp=BLINK:200:50"_s, "--for"_s, "1000"_s, "--off-at-end"_s});
        for (const int level : {1, 0, 1}) {
            QTRY_COMPARE(chip.level(2), level);
        }
        bench.send(SIGTERM);
        QCOMPARE(bench.end(), (BenchRun{0}));
        QVERIFY(isTraceComplete(trace));
        QCOMPARE(contentOf(trace).lastIndexOf("\n0#") > contentOf(trace).lastIndexOf("\n1#"), true);
    }

    void getReadsTheWire()
    {
        const SimChip chip("verbs"_s, 4);
        chip.pull(1, 1);
        QCOMPARE(runBench({"--config"_s, configurationOn(chip), "get"_s, "button"_s, "door"_s, "lamp"_s}),
                 (BenchRun{0, "button=OFF\ndoor=ON\nlamp=OFF\n"}));
    }

    void expectWaitsForTheWire()
    {
        const SimChip chip("verbs"_s, 4);
        BenchProcess bench({"--config"_s, configurationOn(chip), "shell"_s, "--echo"_s});
        bench.process().write("expect button=ON within 60000\nexpect button=OFF within 10\n");
        QVERIFY(bench.waitForOutput("within 60000"));
        chip.pull(0, 1);
        const BenchRun run = bench.end();
        QCOMPARE(run.status, 1);
        QVERIFY2(run.output.contains("> expect button=OFF within 10\n"), run.output.constData());
        QCOMPARE(run.errors, "appvantor: <stdin>:2: expected button=OFF within 10 ms, found ON\n");
    }
};

QTEST_GUILESS_MAIN(TestVerbs)
#include "test_verbs.moc"
