#include "line_bench.h"
#include "literals.h"
#include "rows.h"
#include "sim_chip.h"

#include <QtTest>

#include <atomic>
#include <chrono>
#include <ctime>
#include <thread>

namespace {

constexpr int c_lines = 8;
/// The far side's interrupts are delivered at the kernel's tick, each millisecond: two edges between two
/// ticks are one interrupt. This is the highest rate at which none of them is lost before the kernel has seen
/// it.
constexpr auto c_edgeInterval = std::chrono::microseconds(1100);

void waitForTick()
{
    std::this_thread::sleep_for(c_edgeInterval);
}

/// Inputs of the first lines of a chip, called by their offsets.
QVector<QJsonObject> inputsOf(const SimChip& chip, int count)
{
    QVector<QJsonObject> lines;
    for (int line = 0; line < count; ++line) {
        lines.append(input("in%1"_s.arg(line), chip.name(), line));
    }
    return lines;
}

/// A change of a line, as the bench tells it.
struct Told
{
    int line = 0;
    LineLevel level;
};

/// Changes that were lost, and the one that is told next.
struct Gap
{
    quint64 count = 0;
    qint64 fromUs = 0;
    qint64 untilUs = 0;
    Told next;
};

/// The changes of a bench's lines from now on.
class Record : public QObject
{
public:
    explicit Record(LineBench* bench)
    {
        connect(&bench->device(), &LineDevice::lineChanged, this, [this](int line, const LineLevel& level) {
            told.push_back({line, level});
            if (m_afterGap) {
                gaps.back().next = told.back();
                m_afterGap = false;
            }
        });
        connect(&bench->device(), &LineDevice::changesLost, this,
                [this](quint64 count, qint64 fromUs, qint64 untilUs) {
                    gaps.push_back({count, fromUs, untilUs, {}});
                    m_afterGap = true;
                });
        connect(&bench->device(), &DDevice::problemTold, this,
                [this](const DWording& text) { problems.append(text.english()); });
    }

    std::vector<Told> told;
    std::vector<Gap> gaps;
    QStringList problems;

private:
    bool m_afterGap = false;
};

/// Lets the far side of a chip's first lines change, one after the other, all to 1, all to 0, and so on.
void makeRounds(const SimChip& chip, int lines, int rounds)
{
    for (int round = 1; round <= rounds; ++round) {
        for (int line = 0; line < lines; ++line) {
            chip.pull(line, round % 2);
        }
        waitForTick();
    }
}

} // namespace

/// Edges that the far side makes, as events.
class TestEdges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noEdgeIsLostAndAllAreInOrder_data()
    {
        const Rows<DevicePlace, int> row("place", "edges");
        row("in the same thread", DevicePlace::SameThread, MANY_EDGES);
        row("in a thread of its own", DevicePlace::OwnThread, MANY_EDGES / 5);
    }

    void noEdgeIsLostAndAllAreInOrder()
    {
        QFETCH(DevicePlace, place);
        QFETCH(int, edges);
        const SimChip chip("edges"_s, c_lines);
        LineBench bench(inputsOf(chip, c_lines), place);
        const Record record(&bench);
        Listening listening(&bench, "listenToAll"_s, {});
        QTRY_COMPARE(listening.events().size(), 1);
        const qint64 startUs = bench.device().scheduler()->now();
        std::thread farSide([&] { makeRounds(chip, c_lines, edges / c_lines); });
        QTRY_VERIFY_WITH_TIMEOUT(static_cast<int>(record.told.size()) == edges || !record.problems.isEmpty(),
                                 240000);
        const qint64 endUs = bench.device().scheduler()->now();
        farSide.join();
        QTest::qWait(20);
        qInfo("%d edges a second", static_cast<int>(edges * 1000000LL / (endUs - startUs)));
        QCOMPARE(record.problems, QStringList());
        QCOMPARE(static_cast<int>(record.told.size()), edges);
        qint64 lastUs = startUs;
        for (int edge = 0; edge < edges; ++edge) {
            const Told& told = record.told.at(static_cast<std::size_t>(edge));
            QCOMPARE(told.line, edge % c_lines);
            QCOMPARE(told.level.level, (edge / c_lines + 1) % 2);
            QVERIFY(told.level.sinceUs >= lastUs && told.level.sinceUs <= endUs);
            lastUs = told.level.sinceUs;
        }
        QCOMPARE(listening.events().size(), edges + 1);
        listening.order().stop();
        QVERIFY(listening.isOver() && listening.order().isSuccessful());
    }

    void edgesOfFourChipsAreToldInTheOrderOfTheirMaking()
    {
        constexpr int rounds = 100;
        std::vector<std::unique_ptr<SimChip>> chips;
        QVector<QJsonObject> lines;
        for (const QString& name : {"a"_s, "b"_s, "c"_s, "d"_s}) {
            chips.push_back(std::make_unique<SimChip>(name, 2));
            lines.prepend(input(name, name, 0));
            lines.prepend(input(name + "2"_s, name, 1));
        }
        LineBench bench(lines);
        const Record record(&bench);
        QVector<int> made;
        for (int round = 1; round <= rounds; ++round) { // nobody reads meanwhile
            for (const int chip : {2, 0, 3, 1}) {
                for (const int line : {1, 0}) {
                    chips.at(static_cast<std::size_t>(chip))->pull(line, round % 2);
                    made.append(lines.size() - 1 - (2 * chip + line));
                    waitForTick();
                }
            }
        }
        QTRY_COMPARE(static_cast<int>(record.told.size()), made.size());
        for (int edge = 0; edge < made.size(); ++edge) {
            QCOMPARE(record.told.at(static_cast<std::size_t>(edge)).line, made.at(edge));
        }
    }

    /// 16 lines change 128 times, of which the kernel keeps the last 64 each; a line that changed before them
    /// has lost all.
    void whatTheKernelDroppedIsToldAndTheTrueLevelsAfterIt()
    {
        constexpr int lines = 16;
        const SimChip chip("edges"_s, lines + 1);
        LineBench bench(inputsOf(chip, lines + 1));
        Record record(&bench);
        for (const int level : {1, 0, 1}) {
            chip.pull(lines, level);
            waitForTick();
        }
        const qint64 startUs = bench.device().scheduler()->now();
        makeRounds(chip, lines, 128);
        QTRY_COMPARE(bench.device().level(lines).level, 1);
        QStringList problems;
        for (int line = 0; line < lines; ++line) {
            problems.append(
                "\"in%1\" (line %1 of %2): 64 edges came faster than they could be read, and are lost"_s
                    .arg(line)
                    .arg(chip.name()));
        }
        problems.append(
            "%1: 3 edges of lines that are still now came faster than they could be read, and are lost"_s.arg(
                chip.name()));
        QCOMPARE(record.problems, problems);
        QCOMPARE(static_cast<int>(record.told.size()), 64 * lines + 1);
        QCOMPARE(record.told.back().line, lines);
        for (int line = 0; line < lines; ++line) {
            QCOMPARE(bench.device().level(line).level, chip.level(line));
        }
        QCOMPARE(static_cast<int>(record.gaps.size()), lines + 1);
        for (int line = 0; line <= lines; ++line) { // each ends where the line is known again
            const Gap& gap = record.gaps.at(static_cast<std::size_t>(line));
            QCOMPARE(gap.count, quint64(line < lines ? 64 : 3));
            QVERIFY(gap.fromUs <= startUs);
            QCOMPARE(gap.next.line, line);
            QCOMPARE(gap.next.level.sinceUs, gap.untilUs);
        }
        record.told.clear();
        makeRounds(chip, lines, 1);
        QTRY_COMPARE(static_cast<int>(record.told.size()), lines);
        QCOMPARE(record.problems.size(), problems.size());
        QCOMPARE(static_cast<int>(record.gaps.size()), lines + 1);
    }

    void theFirstStateIsOfOneReading()
    {
        constexpr int lines = 4;
        const SimChip chip("edges"_s, lines);
        for (int time = 0; time < 30; ++time) {
            std::atomic<bool> ends{false};
            std::thread farSide([&] {
                while (!ends) {
                    makeRounds(chip, lines, 2);
                }
            });
            LineBench bench(inputsOf(chip, lines));
            std::vector<LineLevel> levels;
            quint64 all = 0;
            for (int line = 0; line < lines; ++line) {
                levels.push_back(bench.device().level(line));
                all |= static_cast<quint64>(levels.back().level) << static_cast<unsigned>(line);
            }
            const Record record(&bench);
            Listening toAll(&bench, "listenToAll"_s, {});
            Listening toAllAsWell(&bench, "listenToAll"_s, {});
            Listening toLine(&bench, "startListening"_s, {{"channel"_s, "in3"_s}});
            QTRY_VERIFY(record.told.size() > 20);
            ends = true;
            farSide.join();
            QTRY_COMPARE(bench.device().level(0).level, chip.level(0));
            QTest::qWait(5);
            for (const Told& told : record.told) {
                LineLevel& before = levels.at(static_cast<std::size_t>(told.line));
                QVERIFY(told.level.level != before.level);
                QVERIFY(told.level.sinceUs > before.sinceUs);
                before = told.level;
            }
            const int earlier =
                toAll.events().size() - toAllAsWell.events().size(); // of edges between both starts
            QCOMPARE(toAll.events().mid(earlier), toAllAsWell.events());
            QCOMPARE(toAll.lastValue().toULongLong() >> 3U, toLine.lastValue().toULongLong());
            for (int line = 0; line < lines; ++line) {
                QCOMPARE(bench.device().level(line).level, chip.level(line));
            }
        }
    }

    void anEventHasTheTimeOfTheClockOfItsLine()
    {
        constexpr qint64 hourUs = 3600000000;
        const SimChip chip("edges"_s, 2);
        LineBench bench({input("steady"_s, chip.name(), 0),
                         input("wall"_s, chip.name(), 1, {{"clock"_s, "realtime"_s}})});
        const Record record(&bench);
        const auto setClock = [](qint64 seconds) {
            timespec time = {};
            return clock_gettime(CLOCK_REALTIME, &time) == 0 &&
                   (time.tv_sec += seconds, clock_settime(CLOCK_REALTIME, &time)) == 0;
        };
        const DScheduler* clock = bench.device().scheduler();
        const auto aboutNow = [clock](const Told& told, qint64 laterUs) {
            const qint64 agoUs = clock->now() + laterUs - told.level.sinceUs;
            return agoUs >= 0 && agoUs < 10000000;
        };
        for (const qint64 laterUs : {qint64{0}, hourUs}) {
            QVERIFY(setClock(laterUs / 1000000));
            const int level = laterUs == 0 ? 1 : 0;
            const auto count = record.told.size();
            chip.pull(0, level);
            waitForTick();
            chip.pull(1, level);
            QTRY_COMPARE(record.told.size(), count + 2);
            QCOMPARE(record.told.at(count).line, 0);
            QVERIFY(aboutNow(record.told.at(count), 0));
            QVERIFY(aboutNow(record.told.at(count + 1), laterUs));
        }
        QVERIFY(setClock(-hourUs / 1000000));
    }

    void risingAndFallingEdgesAreToldApart()
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
};

QTEST_GUILESS_MAIN(TestEdges)
#include "test_edges.moc"
