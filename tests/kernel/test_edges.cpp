#include "line_bench.h"
#include "literals.h"
#include "sim_chip.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

constexpr int c_edges = 10000;
/// The far side's interrupts are delivered at the kernel's tick, each millisecond: two edges between two
/// ticks are one interrupt. This is the highest rate at which none of them is lost before the kernel has seen
/// it.
constexpr auto c_edgeInterval = std::chrono::microseconds(1100);

} // namespace

Q_DECLARE_METATYPE(DevicePlace)

/// Edges that the far side makes, as events.
class TestEdges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noEdgeIsLostAndAllAreInOrder_data();
    void noEdgeIsLostAndAllAreInOrder();
    void edgesOfTwoLinesAreToldInTheOrderOfTheirTimes();
    void risingAndFallingEdgesAreToldApart();
};

void TestEdges::noEdgeIsLostAndAllAreInOrder_data()
{
    QTest::addColumn<DevicePlace>("place");
    QTest::newRow("in the same thread") << DevicePlace::SameThread;
    QTest::newRow("in a thread of its own") << DevicePlace::OwnThread;
}

void TestEdges::noEdgeIsLostAndAllAreInOrder()
{
    QFETCH(DevicePlace, place);
    const SimChip chip("edges"_s, 8);
    LineBench bench({input("button"_s, chip.name(), 0)}, place);
    QVector<qint64> times;
    connect(&bench.device(), &LineDevice::lineChanged, this,
            [&times](int, const LineLevel& level) { times.append(level.sinceUs); });
    Listening listening(&bench, "startListening"_s, {{"channel"_s, "button"_s}});
    QTRY_COMPARE(listening.events().size(), 1);
    QElapsedTimer clock;
    clock.start();
    const qint64 startUs = bench.device().scheduler()->now();
    std::thread farSide([&chip] {
        for (int edge = 1; edge <= c_edges; ++edge) {
            chip.pull(0, edge % 2);
            std::this_thread::sleep_for(c_edgeInterval);
        }
    });
    QTRY_COMPARE_WITH_TIMEOUT(listening.events().size(), c_edges + 1, 120000);
    farSide.join();
    qInfo("%d edges a second", static_cast<int>(c_edges * 1000LL / clock.elapsed()));
    QTest::qWait(20);
    QCOMPARE(listening.events().size(), c_edges + 1);
    for (int event = 0; event <= c_edges; ++event) {
        QCOMPARE(listening.events().at(event).value("value"_s).toInt(), event % 2);
    }
    QCOMPARE(times.size(), c_edges);
    QVERIFY(times.first() >= startUs);
    QVERIFY(times.last() <= bench.device().scheduler()->now());
    for (int index = 1; index < times.size(); ++index) {
        QVERIFY(times.at(index) > times.at(index - 1));
    }
    listening.order().stop();
    QVERIFY(listening.isOver() && listening.order().isSuccessful());
}

void TestEdges::edgesOfTwoLinesAreToldInTheOrderOfTheirTimes()
{
    constexpr int rounds = 200;
    const SimChip first("first"_s, 4);
    const SimChip second("second"_s, 4);
    LineBench bench({input("b"_s, "second"_s, 0), input("a"_s, "first"_s, 0)});
    QVector<qint64> times;
    QVector<int> lines;
    connect(&bench.device(), &LineDevice::lineChanged, this, [&](int line, const LineLevel& level) {
        times.append(level.sinceUs);
        lines.append(line);
    });
    for (int round = 1; round <= rounds; ++round) { // nobody reads meanwhile
        first.pull(0, round % 2);
        std::this_thread::sleep_for(c_edgeInterval);
        second.pull(0, round % 2);
        std::this_thread::sleep_for(c_edgeInterval);
    }
    QTRY_COMPARE(times.size(), 2 * rounds);
    for (int index = 0; index < times.size(); ++index) {
        QCOMPARE(lines.at(index), index % 2 == 0 ? 1 : 0);
        QVERIFY(index == 0 || times.at(index) > times.at(index - 1));
    }
}

void TestEdges::risingAndFallingEdgesAreToldApart()
{
    const SimChip chip("edges"_s, 8);
    LineBench bench({input("button"_s, chip.name(), 0)});
    Listening rising(&bench, "startListening"_s, {{"channel"_s, "button"_s}, {"edge"_s, "RE"_s}});
    Listening falling(&bench, "startListening"_s, {{"channel"_s, "button"_s}, {"edge"_s, "FE"_s}});
    QTRY_COMPARE(falling.events().size(), 1);
    chip.pull(0, 1);
    QTRY_COMPARE(rising.events().size(), 2);
    QCOMPARE(rising.lastValue().toBool(), true);
    QTRY_COMPARE(falling.events().size(), 2);
    QCOMPARE(falling.lastValue().toBool(), false);
    chip.pull(0, 0);
    QTRY_COMPARE(falling.events().size(), 3);
    QCOMPARE(rising.lastValue().toBool(), false);
    QCOMPARE(falling.lastValue().toBool(), true);
}

QTEST_GUILESS_MAIN(TestEdges)
#include "test_edges.moc"
