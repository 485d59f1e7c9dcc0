#include "board_bench.h"

#include <QTest>

namespace {

using Change = BoardBench::Change;
using Wire = SimulatedBoardSetup::Wire;

} // namespace

class TestWires : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWireCarriesTheLevelAtOnce()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s)}, {{0, 1, 0, false}}));
        bench.advanceMs(4);
        bench.write("a"_s, 1);
        QCOMPARE(bench.changes, (QVector<Change>{{0, 1, 4000}, {1, 1, 4000}}));
    }

    void aWireDelaysEachChange()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s)}, {{0, 1, 200000, false}}));
        bench.write("a"_s, 1);
        bench.advanceMs(50);
        bench.write("a"_s, 0);
        bench.advanceMs(149);
        QCOMPARE(bench.level(1), 0);
        bench.advanceMs(101);
        QCOMPARE(bench.changes, (QVector<Change>{{0, 1, 0}, {0, 0, 50000}, {1, 1, 200000}, {1, 0, 250000}}));
    }

    void anInvertedWireHoldsFromTheStart()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s)}, {{0, 1, 0, true}}));
        QCOMPARE(bench.level(1), 1);
        bench.write("a"_s, 1);
        QCOMPARE(bench.level(1), 0);
    }

    void oneLineMayFeedSeveralWires()
    {
        BoardBench bench(
            boardOf({output("a"_s), input("b"_s), input("c"_s)}, {{0, 1, 0, false}, {0, 2, 10000, true}}));
        QCOMPARE(bench.level(2), 1);
        bench.write("a"_s, 1);
        bench.advanceMs(10);
        QCOMPARE(bench.changes, (QVector<Change>{{0, 1, 0}, {1, 1, 0}, {2, 0, 10000}}));
    }

    void wiresAreChained()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s), input("c"_s), input("d"_s)},
                                 {{0, 1, 1000, false}, {1, 2, 2000, true}, {2, 3, 0, false}}));
        QCOMPARE(bench.level(2), 1);
        QCOMPARE(bench.level(3), 1);
        bench.write("a"_s, 1);
        bench.advanceMs(10);
        QCOMPARE(bench.changes, (QVector<Change>{{0, 1, 0}, {1, 1, 1000}, {2, 0, 3000}, {3, 0, 3000}}));
    }

    void nothingIsUnderWayAtTheStartWhateverTheOrderOfTheWires()
    {
        QVector<Wire> wires{{0, 1, 5000, true}, {1, 2, 5000, false}, {2, 3, 5000, true}};
        for (int time = 0; time < 2; ++time) {
            BoardBench bench(boardOf({output("a"_s), input("b"_s), input("c"_s), input("d"_s)}, wires));
            QCOMPARE(bench.level(1), 1);
            QCOMPARE(bench.level(2), 1);
            QCOMPARE(bench.level(3), 0);
            bench.advanceMs(100);
            QVERIFY(bench.changes.isEmpty());
            std::reverse(wires.begin(), wires.end());
        }
    }

    void wiresBetweenKindsOfLinesConvert_data()
    {
        QTest::addColumn<int>("reading");
        QTest::addColumn<bool>("inverted");
        QTest::addColumn<int>("level");
        QTest::newRow("lowest") << 0 << false << 0;
        QTest::newRow("top of the lower half") << 32767 << false << 0;
        QTest::newRow("bottom of the upper half") << 32768 << false << 1;
        QTest::newRow("highest") << 65535 << false << 1;
        QTest::newRow("lowest, inverted") << 0 << true << 1;
        QTest::newRow("top of the lower half, inverted") << 32767 << true << 1;
        QTest::newRow("bottom of the upper half, inverted") << 32768 << true << 0;
    }

    void wiresBetweenKindsOfLinesConvert()
    {
        QFETCH(int, reading);
        QFETCH(bool, inverted);
        QFETCH(int, level);
        BoardBench bench(boardOf({analogOutput("dac"_s), input("in"_s)}, {{0, 1, 0, inverted}}));
        bench.write("dac"_s, reading);
        QCOMPARE(bench.level(1), level);
    }

    void aDigitalLineDrivesAnAnalogueOneFully()
    {
        BoardBench bench(boardOf({output("out"_s), analogInput("adc"_s)}, {{0, 1, 0, false}}));
        bench.write("out"_s, 1);
        QCOMPARE(bench.level(1), 65535);
        bench.write("out"_s, 0);
        QCOMPARE(bench.level(1), 0);
    }

    void analogueLinesCarryTheirReading()
    {
        BoardBench bench(boardOf({analogOutput("dac"_s), analogInput("adc"_s), analogInput("not"_s)},
                                 {{0, 1, 0, false}, {0, 2, 0, true}}));
        bench.write("dac"_s, 1000);
        QCOMPARE(bench.level(1), 1000);
        QCOMPARE(bench.level(2), 64535);
    }

    void aChainMayBeAsLongAsItLikes()
    {
        constexpr int count = 100000;
        SimulatedBoardSetup setup = boardOf({output("line0"_s)});
        for (int line = 1; line < count; ++line) {
            setup.lines.append(input("line%1"_s.arg(line)));
            setup.wires.append({line - 1, line, 0, line == 1});
        }
        BoardBench bench(setup);
        QCOMPARE(bench.level(count - 1), 1);
        bench.write("line0"_s, 1);
        QCOMPARE(bench.changes.size(), count);
        QCOMPARE(bench.changes.constLast(), (Change{count - 1, 0, 0}));
    }

    void eachBranchIsFollowedToItsEndInTheOrderOfTheWires()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s), input("c"_s), input("d"_s), input("e"_s)},
                                 {{0, 3, 0, false}, {0, 1, 0, false}, {3, 4, 0, false}, {1, 2, 0, false}}));
        bench.write("a"_s, 1);
        QVector<int> lines;
        for (const Change& change : qAsConst(bench.changes)) {
            lines.append(change.line);
        }
        QCOMPARE(lines, (QVector<int>{0, 3, 4, 1, 2}));
    }

    void listenersHearWhatAWireBrings()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s)}, {{0, 1, 1000, false}}));
        bench.listen("b"_s);
        bench.write("a"_s, 1);
        deliver();
        bench.client.heard.clear();
        bench.advanceMs(1);
        QCOMPARE(bench.client.replied("values"_s), QVariantList{QVariant(QVariantList{1})});
    }

    void aBoardThatGoesLeavesNothingUnderWay()
    {
        BoardBench bench(boardOf({output("a"_s), input("b"_s)}, {{0, 1, 1000, false}}));
        bench.write("a"_s, 1);
        bench.board.reset();
        bench.changes.clear();
        bench.advanceMs(10);
        QVERIFY(bench.changes.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestWires)

#include "test_wires.moc"
