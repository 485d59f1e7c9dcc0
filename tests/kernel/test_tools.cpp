#include "bench_process.h"
#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QtTest>

#include <chrono>
#include <csignal>
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
    void levelsAreThoseThatGpiogetReads()
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

    void levelsThatGpiosetSetsAreRead()
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

    void edgesAreThoseThatGpiomonReports()
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

    void discoveryShowsChipsLinesAndConsumers()
    {
        const SimChip chip("found"_s, 3, {"ALPHA"_s, "BETA"_s});
        LineBench holder(
            {output("lamp"_s, chip.name(), 1, {{"activeLow"_s, true}, {"drive"_s, "open-drain"_s}})});
        const BenchRun run = runBench({"discover"_s});
        QCOMPARE(run.status, 0);
        QCOMPARE(
            run.lines(),
            QStringList({"%1 \"found\", 3 lines"_s.arg(chip.name()),
                         "  LINE  NAME                 DIRECTION CONSUMER         FLAGS"_s,
                         "     0  ALPHA                in"_s,
                         "     1  BETA                 out       appvantor        active-low open-drain"_s,
                         "     2                       in"_s}));
        const QJsonObject json = runBench({"--json"_s, "discover"_s}).json().value(0);
        QCOMPARE(json.value("label"_s).toString(), "found"_s);
        const QJsonArray lines = json.value("lines"_s).toArray();
        QCOMPARE(lines.at(1).toObject().value("consumer"_s).toString(), "appvantor"_s);
        QCOMPARE(lines.at(0).toObject().value("flags"_s).toArray(), QJsonArray());
    }

    void theConfigurationForAChipRuns()
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

    void theConfigurationForAChipLeavesOutWhatOthersHold()
    {
        const SimChip chip("found"_s, 2, {"ALPHA"_s, "BETA"_s});
        const LineBench holder({output("lamp"_s, chip.name(), "BETA"_s)});
        const BenchRun run = runBench("--json discover --config-for found"_words);
        const QJsonArray leftOut = {QJsonObject{{"line"_s, 1}, {"consumer"_s, "appvantor"_s}}};
        QCOMPARE(run.json().value(0).value("leftOut"_s).toArray(), leftOut);
        QVERIFY2(run.errors.contains(" is held by \"appvantor\" and left out\n"), run.errors.constData());
    }

    void theWatchTellsWhatComesGoesIsTakenAndReleased()
    {
        const SimChip chip("found"_s, 3, {"ALPHA"_s, "BETA"_s});
        BenchProcess watch({"--json"_s, "discover"_s, "--watch"_s});
        QVERIFY(watch.waitForOutput("ALPHA"));
        QVERIFY(watch.waitUntilCaught(SIGINT));
        {
            LineBench holder({output("lamp"_s, chip.name(), "BETA"_s, {{"drive"_s, "open-drain"_s}})});
            QVERIFY(watch.waitForOutput("taken"));
        }
        QVERIFY(watch.waitForOutput("released"));
        {
            const SimChip other("other"_s, 2);
            QVERIFY(watch.waitForOutput("came"));
        }
        QVERIFY(watch.waitForOutput("gone"));
        watch.send(SIGINT);
        const BenchRun run = watch.end();
        QCOMPARE(run.status, 0);
        QStringList told;
        for (const QJsonObject& line : run.json().mid(1)) {
            QVERIFY(QDateTime::fromString(line.value("time"_s).toString(), Qt::ISODateWithMs).isValid());
            told.append(
                "%1 %2 %3"_s.arg(line.value("change"_s).toString(), line.value("name"_s).toString(),
                                 line.value("consumer"_s).toString() + line.value("label"_s).toString()));
        }
        QCOMPARE(told, QStringList({"taken BETA appvantorfound"_s, "released BETA appvantorfound"_s,
                                    "came  other"_s, "gone  other"_s}));
    }

    void theWatchTellsLinesThatAreTakenAllAtOnce()
    {
        constexpr int lines = 60;
        const SimChip chip("wide"_s, lines);
        BenchProcess watch({"discover"_s, "--watch"_s});
        QVERIFY(watch.waitForOutput("\n    59 "));
        QVERIFY(watch.waitUntilCaught(SIGINT));
        QVERIFY(kill(static_cast<pid_t>(watch.process().processId()), SIGSTOP) == 0);
        QVERIFY(watch.waitUntilStopped());
        QVector<QJsonObject> all;
        for (int line = 0; line < lines; ++line) {
            all.append(input("in%1"_s.arg(line), chip.name(), line));
        }
        const LineBench holder(all);
        QVERIFY(kill(static_cast<pid_t>(watch.process().processId()), SIGCONT) == 0);
        for (const int line : {0, lines - 1}) {
            QVERIFY(watch.waitForOutput(
                "line %1 of %2 by \"appvantor\": taken"_s.arg(line).arg(chip.name()).toUtf8()));
        }
        watch.send(SIGTERM);
        const BenchRun run = watch.end();
        QCOMPARE(run.status, 0);
        QCOMPARE(run.output.count(": taken\n"), lines);
    }
};

QTEST_GUILESS_MAIN(TestTools)
#include "test_tools.moc"
