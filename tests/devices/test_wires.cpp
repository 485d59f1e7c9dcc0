#include "board_bench.h"
#include "rows.h"

class TestWires : public QObject
{
    Q_OBJECT

    using Change = BoardBench::Change;
    using Wire = SimulatedBoardSetup::Wire;

private Q_SLOTS:
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
        bench.write("a"_s, 0);
        QVERIFY(!bench.scheduler.advanceToNext());
    }

    void oneLineMayFeedSeveralWires()
    {
        BoardBench bench(
            boardOf({output("a"_s), input("b"_s), input("c"_s)}, {{0, 1, 0, false}, {0, 2, 10000, true}}));
        QCOMPARE(bench.level(2), 1);
        bench.advanceMs(4);
        bench.write("a"_s, 1);
        bench.advanceMs(10);
        QCOMPARE(bench.changes, (QVector<Change>{{0, 1, 4000}, {1, 1, 4000}, {2, 0, 14000}}));
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

    void theDelaysOfAChainDoNotGrowWhereTheBoardIsCalledLate()
    {
        BoardBench bench(
            boardOf({output("a"_s), input("b"_s), input("c"_s)}, {{0, 1, 1000, false}, {1, 2, 1000, false}}));
        bench.write("a"_s, 1);
        bench.scheduler.elapse(1700);
        bench.scheduler.advance(1000);
        QCOMPARE(bench.changes, (QVector<Change>{{0, 1, 0}, {1, 1, 1700}, {2, 1, 2000}}));
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
        const Rows<QString, QString, int, bool, int> row("from", "to", "written", "inverted", "level");
        const QString dac = "dac"_s;
        const QString in = "in"_s;
        const QString adc = "adc"_s;
        row("lowest", dac, in, 0, false, 0);
        row("top of the lower half", dac, in, 32767, false, 0);
        row("bottom of the upper half", dac, in, 32768, false, 1);
        row("highest", dac, in, 65535, false, 1);
        row("lowest, inverted", dac, in, 0, true, 1);
        row("top of the lower half, inverted", dac, in, 32767, true, 1);
        row("bottom of the upper half, inverted", dac, in, 32768, true, 0);
        row("digital, high", "out", adc, 1, false, 65535);
        row("digital, low", "out", adc, 0, false, 0);
        row("analogue only", dac, adc, 1000, false, 1000);
        row("analogue only, inverted", dac, adc, 1000, true, 64535);
    }
    void wiresBetweenKindsOfLinesConvert()
    {
        const auto [from, to, written, inverted, level] = Rows<QString, QString, int, bool, int>::values();
        const QVector<SimulatedBoardSetup::Line> lines = {output("out"_s), analogOutput("dac"_s),
                                                          input("in"_s), analogInput("adc"_s)};
        const int source = from == "out"_s ? 0 : 1;
        const int target = to == "in"_s ? 2 : 3;
        BoardBench bench(boardOf(lines, {{source, target, 0, inverted}}));
        bench.write(from, 1);
        bench.write(from, written);
        QCOMPARE(bench.level(target), level);
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
        QVERIFY(!bench.scheduler.advanceToNext());
    }
};

QTEST_GUILESS_MAIN(TestWires)
#include "test_wires.moc"
