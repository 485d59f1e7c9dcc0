#include "bench_process.h"
#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

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
    const SimChip chip("tools"_s, 4);
    for (const int level : {1, 0}) {
        chip.pull(0, level);
        const QByteArray expected = outputOf("gpioget"_s, {chip.name(), "0"_s});
        LineBench bench({input("button"_s, chip.name(), 0)});
        QCOMPARE(bench.get("button"_s).results.value("value"_s).toString().toUtf8(), expected);
        QCOMPARE(expected, QByteArray::number(level));
    }
}

void TestTools::levelsThatGpiosetSetsAreRead()
{
    const SimChip chip("tools"_s, 4);
    for (const int level : {1, 0}) {
        QProcess tool;
        tool.start("gpioset"_s, {"--mode=signal"_s, chip.name(), "1=%1"_s.arg(level)});
        QTRY_VERIFY(outputOf("gpioinfo"_s, {chip.name()}).contains("gpioset"));
        QCOMPARE(chip.level(1), level);
        tool.terminate();
        QVERIFY(tool.waitForFinished());
        LineBench bench({output("lamp"_s, chip.name(), 1)});
        QVERIFY(bench.set("lamp"_s, level != 0 ? "ON"_s : "OFF"_s).success);
        QCOMPARE(chip.level(1), level);
    }
}

void TestTools::edgesAreThoseThatGpiomonReports()
{
    constexpr int edges = 20;
    const SimChip chip("tools"_s, 4);
    QProcess tool;
    tool.start("gpiomon"_s, {"--num-events=%1"_s.arg(edges), "--format=%e"_s, chip.name(), "0"_s});
    QTRY_VERIFY(outputOf("gpioinfo"_s, {chip.name()}).contains("gpiomon"));
    LineBench bench({input("button"_s, chip.name(), 1)});
    Listening listening(&bench, "startListening"_s, {{"channel"_s, "button"_s}});
    for (int edge = 1; edge <= edges; ++edge) {
        chip.pull(0, edge % 2);
        chip.pull(1, edge % 2);
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
    }
    QVERIFY(tool.waitForFinished());
    QTRY_COMPARE(listening.events().size(), edges + 1);
    QByteArrayList ours;
    for (const QVariantMap& event : listening.events().mid(1)) {
        ours.append(event.value("value"_s).toByteArray());
    }
    QCOMPARE(ours, tool.readAllStandardOutput().trimmed().split('\n'));
}

void TestTools::discoveryShowsChipsLinesAndConsumers()
{
    const SimChip chip("found"_s, 3, {"ALPHA"_s, "BETA"_s});
    LineBench holder(
        {output("lamp"_s, chip.name(), 1, {{"activeLow"_s, true}, {"drive"_s, "open-drain"_s}})});
    const BenchRun run = runBench({"discover"_s});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.lines(),
             QStringList({"%1 \"found\", 3 lines"_s.arg(chip.name()),
                          "  LINE  NAME                 DIRECTION CONSUMER         FLAGS"_s,
                          "     0  ALPHA                in"_s,
                          "     1  BETA                 out       appvantor        active-low open-drain"_s,
                          "     2                       in"_s}));
    const QJsonObject json = runBench({"--json"_s, "discover"_s}).json().value(0);
    QCOMPARE(json.value("label"_s).toString(), "found"_s);
    QCOMPARE(json.value("lines"_s).toArray().at(1).toObject().value("consumer"_s).toString(), "appvantor"_s);
}

void TestTools::theConfigurationForAChipRuns()
{
    const SimChip chip("found"_s, 3, {"ALPHA"_s, "BETA"_s});
    const BenchRun found = runBench({"discover"_s, "--config-for"_s, "found"_s});
    QCOMPARE(found.status, 0);
    chip.pull(1, 1);
    const BenchRun run = runBench(
        {"--json"_s, "--config"_s, temporaryFile(found.output), "run"_s, "getValue"_s, "channel=BETA"_s});
    QVERIFY2(run.status == 0, run.errors.constData());
    QCOMPARE(run.json().value(0).value("results"_s).toObject().value("value"_s).toInt(), 1);
}

QTEST_GUILESS_MAIN(TestTools)
#include "test_tools.moc"
