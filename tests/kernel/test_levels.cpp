#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

#include <trace/vcd_trace.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

/// Levels of kernel lines, both ways.
class TestLevels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOutputIsSeenOnTheFarSide();
    void anInputFollowsTheFarSide();
    void activeLowTurnsLevelsRound();
    void biasReachesTheLine();
    void anOutputStartsAtItsLevel();
    void switchingInvertsAnOutput();
    void aChipIsFoundByFileNameAndLabel();
    void aLineIsFoundByItsName();
    void twoChipsWorkAtOnce();
    void sixtyFourLinesAreOneNumber();
    void linesAreFreeAfterwards();
    void initDrivesNothing();
    void aTraceHoldsTheKernelsTimes();
};

void TestLevels::anOutputIsSeenOnTheFarSide()
{
    const SimChip chip("levels"_s, 8);
    LineBench bench({output("lamp"_s, chip.name(), 3)});
    for (const int level : {1, 0, 1}) {
        QVERIFY(bench.set("lamp"_s, level != 0 ? "ON"_s : "OFF"_s).success);
        QCOMPARE(chip.level(3), level);
        QCOMPARE(bench.get("lamp"_s).results.value("value"_s).toInt(), level);
    }
}

void TestLevels::anInputFollowsTheFarSide()
{
    const SimChip chip("levels"_s, 8);
    LineBench bench({input("button"_s, chip.name(), 2)});
    for (const int level : {1, 0, 1}) {
        chip.pull(2, level);
        QCOMPARE(bench.get("button"_s).results.value("value"_s).toInt(), level);
        QTRY_COMPARE(bench.device().level(0).level, level);
    }
}

void TestLevels::activeLowTurnsLevelsRound()
{
    const QJsonObject activeLow = {{"activeLow"_s, true}};
    const SimChip chip("levels"_s, 8);
    LineBench bench(
        {output("lamp"_s, chip.name(), 0, activeLow), input("button"_s, chip.name(), 1, activeLow)});
    QCOMPARE(chip.level(0), 1);
    QVERIFY(bench.set("lamp"_s, "ON"_s).success);
    QCOMPARE(chip.level(0), 0);
    QCOMPARE(bench.get("button"_s).results.value("value"_s).toInt(), 1);
    chip.pull(1, 1);
    QCOMPARE(bench.get("button"_s).results.value("value"_s).toInt(), 0);
    QTRY_COMPARE(bench.device().level(1).level, 0);
}

void TestLevels::biasReachesTheLine()
{
    const SimChip chip("levels"_s, 8);
    chip.pull(1, 1);
    LineBench bench({input("up"_s, chip.name(), 0, {{"bias"_s, "pull-up"_s}}),
                     input("down"_s, chip.name(), 1, {{"bias"_s, "pull-down"_s}})});
    QCOMPARE(chip.pullOf(0), QByteArray("pull-up"));
    QCOMPARE(chip.pullOf(1), QByteArray("pull-down"));
    QCOMPARE(bench.get("up"_s).results.value("value"_s).toInt(), 1);
    QCOMPARE(bench.get("down"_s).results.value("value"_s).toInt(), 0);
}

void TestLevels::anOutputStartsAtItsLevel()
{
    const SimChip chip("levels"_s, 8);
    LineBench bench({output("lamp"_s, chip.name(), 5, {{"level"_s, 1}})});
    QCOMPARE(chip.level(5), 1);
    QCOMPARE(bench.get("lamp"_s).results.value("value"_s).toInt(), 1);
}

void TestLevels::switchingInvertsAnOutput()
{
    const SimChip chip("levels"_s, 8);
    LineBench bench({output("lamp"_s, chip.name(), 5)});
    for (const int level : {1, 0}) {
        QVERIFY(bench.run("switchValue"_s, {{"channel"_s, "lamp"_s}}).success);
        QCOMPARE(chip.level(5), level);
    }
}

void TestLevels::aChipIsFoundByFileNameAndLabel()
{
    const SimChip other("others"_s, 8);
    const SimChip chip("by name"_s, 8);
    const QStringList ways = {"/dev/"_s + chip.name(), chip.name(), chip.label()};
    for (const QString& way : ways) {
        LineBench bench({output("lamp"_s, way, 5)});
        QVERIFY2(bench.device().isConnected(), qPrintable(bench.device().connectionProblem()));
        QVERIFY(bench.set("lamp"_s, "ON"_s).success);
        QCOMPARE(chip.level(5), 1);
        QCOMPARE(other.level(5), 0);
    }
}

void TestLevels::aLineIsFoundByItsName()
{
    const SimChip chip("levels"_s, 4, {"FIRST"_s, "SECOND"_s, "THIRD"_s});
    LineBench bench({output("lamp"_s, chip.name(), "THIRD"_s)});
    QVERIFY(bench.set("lamp"_s, "ON"_s).success);
    QCOMPARE(chip.level(2), 1);
    QCOMPARE(chip.level(0), 0);
}

void TestLevels::twoChipsWorkAtOnce()
{
    const SimChip first("one"_s, 8);
    const SimChip second("two"_s, 8);
    LineBench bench({output("a"_s, "one"_s, 0), input("b"_s, "two"_s, 0)});
    QVERIFY(bench.set("a"_s, "ON"_s).success);
    QCOMPARE(first.level(0), 1);
    QCOMPARE(bench.get("b"_s).results.value("value"_s).toInt(), 0);
    second.pull(0, 1);
    QCOMPARE(bench.get("b"_s).results.value("value"_s).toInt(), 1);
}

void TestLevels::sixtyFourLinesAreOneNumber()
{
    constexpr int count = 64;
    const SimChip chip("wide"_s, count);
    QVector<QJsonObject> lines;
    for (int line = 0; line < count; ++line) {
        lines.append(input(QString::number(line) + "th"_s, chip.name(), line));
    }
    LineBench bench(lines);
    Listening listening(&bench, "listenToAll"_s, {});
    quint64 expected = 0;
    for (const int line : {0, 7, 31, 32, 63}) {
        chip.pull(line, 1);
        expected |= quint64{1} << static_cast<unsigned>(line);
        QTRY_COMPARE(listening.lastValue().toULongLong(), expected);
    }
    QCOMPARE(listening.events().size(), 6);
}

void TestLevels::linesAreFreeAfterwards()
{
    const SimChip chip("levels"_s, 8);
    for (int round = 0; round < 3; ++round) {
        LineBench bench({output("lamp"_s, chip.name(), 0), input("button"_s, chip.name(), 1)});
        QVERIFY2(bench.device().isConnected(), qPrintable(bench.device().connectionProblem()));
    }
}

void TestLevels::initDrivesNothing()
{
    const SimChip chip("levels"_s, 8);
    LineBench bench({output("lamp"_s, chip.name(), 3, {{"level"_s, 1}})});
    const QVariantList channels = {QVariantMap{{"id"_s, "lamp"_s}, {"direction"_s, "out"_s}}};
    const Outcome outcome = bench.run("init"_s, {{"channels"_s, channels}});
    QVERIFY2(outcome.success, qPrintable(outcome.failure.text));
    QCOMPARE(outcome.results.value("doneOk"_s).toBool(), true);
    QCOMPARE(chip.level(3), 1);
}

void TestLevels::aTraceHoldsTheKernelsTimes()
{
    const SimChip chip("levels"_s, 8);
    LineBench bench({input("button"_s, chip.name(), 2)});
    const QTemporaryDir folder;
    const QString file = folder.filePath("t.vcd"_s);
    VcdTrace trace(bench.device());
    const qint64 beforeUs = bench.device().scheduler()->now();
    QCOMPARE(trace.begin(file), QString());
    const qint64 afterUs = bench.device().scheduler()->now();
    QVector<qint64> times;
    connect(&bench.device(), &LineDevice::lineChanged, this,
            [&times](int, const LineLevel& level) { times.append(level.sinceUs); });
    for (const int level : {1, 0}) {
        chip.pull(2, level);
        QTRY_COMPARE(bench.device().level(0).level, level);
    }
    QCOMPARE(trace.end(), QString());
    QCOMPARE(times.size(), 2);
    const QRegularExpressionMatch traced =
        QRegularExpression("#(\\d+)\n1!\n#(\\d+)\n0!\n"_s).match(QString::fromUtf8(readFile(file)));
    QVERIFY2(traced.hasMatch(), readFile(file).constData());
    const qint64 startUs = times.at(0) - traced.captured(1).toLongLong();
    QVERIFY(startUs >= beforeUs && startUs <= afterUs);
    QCOMPARE(times.at(1) - traced.captured(2).toLongLong(), startUs);
}

QTEST_GUILESS_MAIN(TestLevels)
#include "test_levels.moc"
