#include "bench_process.h"
#include "line_bench.h"
#include "sim_chip.h"
#include "text.h"

#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QtTest>

#include <chrono>
#include <thread>

namespace {

QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() && process.exitCode() == 0 ? process.readAllStandardOutput().trimmed()
                                                                : QByteArray("failed");
}

} // namespace

/// The bench beside the tools of libgpiod, and what it discovers.
class TestTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void levelsAreThoseThatGpiogetReads();
    void levelsThatGpiosetSetsAreRead();
    void edgesAreThoseThatGpiomonReports();
    void discoveryShowsChipsLinesAndConsumers();
    void theConfigurationForAChipRuns();
};

void TestTools::levelsAreThoseThatGpiogetReads()
{
    const SimChip chip("tools"_q, 4);
    for (const int level : {1, 0}) {
        chip.pull(0, level);
        const QByteArray expected = outputOf("gpioget"_q, {chip.name(), "0"_q});
        LineBench bench({input("button"_q, chip.name(), 0)});
        QCOMPARE(bench.get("button"_q).results.value("value"_q).toString().toUtf8(), expected);
        QCOMPARE(expected, QByteArray::number(level));
    }
}

void TestTools::levelsThatGpiosetSetsAreRead()
{
    const SimChip chip("tools"_q, 4);
    for (const int level : {1, 0}) {
        QProcess tool;
        tool.start("gpioset"_q, {"--mode=signal"_q, chip.name(), "1=%1"_q.arg(level)});
        QTRY_VERIFY(outputOf("gpioinfo"_q, {chip.name()}).contains("gpioset"));
        QCOMPARE(chip.level(1), level);
        tool.terminate();
        QVERIFY(tool.waitForFinished());
        LineBench bench({output("lamp"_q, chip.name(), 1)});
        QVERIFY(bench.set("lamp"_q, level != 0 ? "ON"_q : "OFF"_q).success);
        QCOMPARE(chip.level(1), level);
    }
}

void TestTools::edgesAreThoseThatGpiomonReports()
{
    constexpr int edges = 20;
    const SimChip chip("tools"_q, 4);
    QProcess tool;
    tool.start("gpiomon"_q, {"--num-events=%1"_q.arg(edges), "--format=%e"_q, chip.name(), "0"_q});
    QTRY_VERIFY(outputOf("gpioinfo"_q, {chip.name()}).contains("gpiomon"));
    LineBench bench({input("button"_q, chip.name(), 1)});
    Listening listening(&bench, "startListening"_q, {{"channel"_q, "button"_q}});
    for (int edge = 1; edge <= edges; ++edge) {
        chip.pull(0, edge % 2);
        chip.pull(1, edge % 2);
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
    }
    QVERIFY(tool.waitForFinished());
    QTRY_COMPARE(listening.events().size(), edges + 1);
    QByteArrayList ours;
    for (const QVariantMap& event : listening.events().mid(1)) {
        ours.append(event.value("value"_q).toByteArray());
    }
    QCOMPARE(ours, tool.readAllStandardOutput().trimmed().split('\n'));
}

void TestTools::discoveryShowsChipsLinesAndConsumers()
{
    const SimChip chip("found"_q, 3, {"ALPHA"_q, "BETA"_q});
    LineBench holder(
        {output("lamp"_q, chip.name(), 1, {{"activeLow"_q, true}, {"drive"_q, "open-drain"_q}})});
    const BenchRun run = runBench({"discover"_q});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.lines(),
             QStringList({"%1 \"found\", 3 lines"_q.arg(chip.name()),
                          "  LINE  NAME                 DIRECTION CONSUMER         FLAGS"_q,
                          "     0  ALPHA                in"_q,
                          "     1  BETA                 out       appvantor        active-low open-drain"_q,
                          "     2                       in"_q}));
    const QJsonObject json = runBench({"--json"_q, "discover"_q}).json().value(0);
    QCOMPARE(json.value("label"_q).toString(), "found"_q);
    QCOMPARE(json.value("lines"_q).toArray().at(1).toObject().value("consumer"_q).toString(), "appvantor"_q);
}

void TestTools::theConfigurationForAChipRuns()
{
    const SimChip chip("found"_q, 3, {"ALPHA"_q, "BETA"_q});
    const BenchRun found = runBench({"discover"_q, "--config-for"_q, "found"_q});
    QCOMPARE(found.status, 0);
    chip.pull(1, 1);
    const BenchRun run = runBench(
        {"--json"_q, "--config"_q, temporaryFile(found.output), "run"_q, "getValue"_q, "channel=BETA"_q});
    QVERIFY2(run.status == 0, run.errors.constData());
    QCOMPARE(run.json().value(0).value("results"_q).toObject().value("value"_q).toInt(), 1);
}

QTEST_GUILESS_MAIN(TestTools)
#include "test_tools.moc"
