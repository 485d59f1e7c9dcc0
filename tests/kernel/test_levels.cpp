#include "line_bench.h"
#include "sim_chip.h"
#include "text.h"

#include <trace/vcd_trace.h>

#include <QSignalSpy>
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
    const SimChip chip("levels"_q, 8);
    LineBench bench({output("lamp"_q, chip.name(), 3)});
    for (const int level : {1, 0, 1}) {
        QVERIFY(bench.set("lamp"_q, level != 0 ? "ON"_q : "OFF"_q).success);
        QCOMPARE(chip.level(3), level);
        QCOMPARE(bench.get("lamp"_q).results.value("value"_q).toInt(), level);
    }
}

void TestLevels::anInputFollowsTheFarSide()
{
    const SimChip chip("levels"_q, 8);
    LineBench bench({input("button"_q, chip.name(), 2)});
    for (const int level : {1, 0, 1}) {
        chip.pull(2, level);
        QCOMPARE(bench.get("button"_q).results.value("value"_q).toInt(), level);
        QTRY_COMPARE(bench.device().level(0), level);
    }
}

void TestLevels::activeLowTurnsLevelsRound()
{
    const QJsonObject activeLow = {{"activeLow"_q, true}};
    const SimChip chip("levels"_q, 8);
    LineBench bench(
        {output("lamp"_q, chip.name(), 0, activeLow), input("button"_q, chip.name(), 1, activeLow)});
    QCOMPARE(chip.level(0), 1);
    QVERIFY(bench.set("lamp"_q, "ON"_q).success);
    QCOMPARE(chip.level(0), 0);
    QCOMPARE(bench.get("button"_q).results.value("value"_q).toInt(), 1);
    chip.pull(1, 1);
    QCOMPARE(bench.get("button"_q).results.value("value"_q).toInt(), 0);
    QTRY_COMPARE(bench.device().level(1), 0);
}

void TestLevels::biasReachesTheLine()
{
    const SimChip chip("levels"_q, 8);
    chip.pull(1, 1);
    LineBench bench({input("up"_q, chip.name(), 0, {{"bias"_q, "pull-up"_q}}),
                     input("down"_q, chip.name(), 1, {{"bias"_q, "pull-down"_q}})});
    QCOMPARE(chip.pullOf(0), QByteArray("pull-up"));
    QCOMPARE(chip.pullOf(1), QByteArray("pull-down"));
    QCOMPARE(bench.get("up"_q).results.value("value"_q).toInt(), 1);
    QCOMPARE(bench.get("down"_q).results.value("value"_q).toInt(), 0);
}

void TestLevels::anOutputStartsAtItsLevel()
{
    const SimChip chip("levels"_q, 8);
    LineBench bench({output("lamp"_q, chip.name(), 5, {{"level"_q, 1}})});
    QCOMPARE(chip.level(5), 1);
    QCOMPARE(bench.get("lamp"_q).results.value("value"_q).toInt(), 1);
}

void TestLevels::switchingInvertsAnOutput()
{
    const SimChip chip("levels"_q, 8);
    LineBench bench({output("lamp"_q, chip.name(), 5)});
    for (const int level : {1, 0}) {
        QVERIFY(bench.run("switchValue"_q, {{"channel"_q, "lamp"_q}}).success);
        QCOMPARE(chip.level(5), level);
    }
}

void TestLevels::aChipIsFoundByFileNameAndLabel()
{
    const SimChip other("others"_q, 8);
    const SimChip chip("by name"_q, 8);
    const QStringList ways = {"/dev/"_q + chip.name(), chip.name(), chip.label()};
    for (const QString& way : ways) {
        LineBench bench({output("lamp"_q, way, 5)});
        QVERIFY2(bench.device().isConnected(), qPrintable(bench.device().connectionProblem()));
        QVERIFY(bench.set("lamp"_q, "ON"_q).success);
        QCOMPARE(chip.level(5), 1);
        QCOMPARE(other.level(5), 0);
    }
}

void TestLevels::aLineIsFoundByItsName()
{
    const SimChip chip("levels"_q, 4, {"FIRST"_q, "SECOND"_q, "THIRD"_q});
    LineBench bench({output("lamp"_q, chip.name(), "THIRD"_q)});
    QVERIFY(bench.set("lamp"_q, "ON"_q).success);
    QCOMPARE(chip.level(2), 1);
    QCOMPARE(chip.level(0), 0);
}

void TestLevels::twoChipsWorkAtOnce()
{
    const SimChip first("one"_q, 8);
    const SimChip second("two"_q, 8);
    LineBench bench({output("a"_q, "one"_q, 0), input("b"_q, "two"_q, 0)});
    QVERIFY(bench.set("a"_q, "ON"_q).success);
    QCOMPARE(first.level(0), 1);
    QCOMPARE(bench.get("b"_q).results.value("value"_q).toInt(), 0);
    second.pull(0, 1);
    QCOMPARE(bench.get("b"_q).results.value("value"_q).toInt(), 1);
}

void TestLevels::sixtyFourLinesAreOneNumber()
{
    constexpr int count = 64;
    const SimChip chip("wide"_q, count);
    QVector<QJsonObject> lines;
    for (int line = 0; line < count; ++line) {
        lines.append(input(QString::number(line) + "th"_q, chip.name(), line));
    }
    LineBench bench(lines);
    Listening listening(&bench, "listenToAll"_q, {});
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
    const SimChip chip("levels"_q, 8);
    for (int round = 0; round < 3; ++round) {
        LineBench bench({output("lamp"_q, chip.name(), 0), input("button"_q, chip.name(), 1)});
        QVERIFY2(bench.device().isConnected(), qPrintable(bench.device().connectionProblem()));
    }
}

void TestLevels::initDrivesNothing()
{
    const SimChip chip("levels"_q, 8);
    LineBench bench({output("lamp"_q, chip.name(), 3, {{"level"_q, 1}})});
    const QVariantList channels = {QVariantMap{{"id"_q, "lamp"_q}, {"direction"_q, "out"_q}}};
    const Outcome outcome = bench.run("init"_q, {{"channels"_q, channels}});
    QVERIFY2(outcome.success, qPrintable(outcome.reason));
    QCOMPARE(outcome.results.value("doneOk"_q).toBool(), true);
    QCOMPARE(chip.level(3), 1);
}

void TestLevels::aTraceHoldsTheKernelsTimes()
{
    const SimChip chip("levels"_q, 8);
    LineBench bench({input("button"_q, chip.name(), 2)});
    const QTemporaryDir folder;
    const QString file = folder.filePath("t.vcd"_q);
    VcdTrace trace(bench.device());
    QCOMPARE(trace.begin(file), QString());
    QSignalSpy changes(&bench.device(), &DDevice::levelChanged);
    for (const int level : {1, 0}) {
        chip.pull(2, level);
        QTRY_COMPARE(bench.device().level(0), level);
    }
    QCOMPARE(trace.end(), QString());
    QCOMPARE(changes.size(), 2);
    const QByteArray expected = "#" + QByteArray::number(changes.at(0).at(2).toLongLong()) + "\n1!\n#" +
                                QByteArray::number(changes.at(1).at(2).toLongLong()) + "\n0!\n";
    QVERIFY2(readFile(file).contains(expected), readFile(file).constData());
}

QTEST_GUILESS_MAIN(TestLevels)
#include "test_levels.moc"
