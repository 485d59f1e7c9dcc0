#include "board_bench.h"

#include <QTest>

namespace {

const QString c_unplugged = "the simulated board is unplugged"_s;

} // namespace

class TestUnplugging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBoardMayBeUnpluggedFromTheStart()
    {
        SimulatedBoardSetup setup = boardOf({input("in"_s)});
        setup.connected = false;
        BoardBench bench(setup);
        QVERIFY(!bench.board->isConnected());
        QCOMPARE(bench.board->connectionProblem(), c_unplugged);
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, "in"_s}}), (QVariantMap{{"failure"_s, c_unplugged}}));
    }

    void unpluggingFailsWhatIsPending()
    {
        BoardBench bench(boardOf({input("in"_s)}));
        bench.send("listenEvents"_s, {{"channel"_s, "in"_s}});
        bench.send("listenToAll"_s, {});
        deliver();
        bench.client.heard.clear();
        bench.board->setPluggedIn(false);
        deliver();
        QCOMPARE(bench.client.failures(), (QStringList{c_unplugged, c_unplugged}));
        QCOMPARE(bench.board->pendingRequests(), 0);
    }

    void listenersOfBeforeHearNothingWhenTheBoardIsBack()
    {
        BoardBench bench(boardOf({input("in"_s)}));
        bench.send("listenEvents"_s, {{"channel"_s, "in"_s}});
        bench.board->setPluggedIn(false);
        bench.board->setPluggedIn(true);
        deliver();
        bench.client.heard.clear();
        bench.board->setInput(0, 1);
        deliver();
        QVERIFY(bench.client.heard.isEmpty());
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, "in"_s}}), (QVariantMap{{"value"_s, 1}}));
    }

    void aLateRequestIsNotCarriedOutAfterTheUnplugging()
    {
        SimulatedBoardSetup setup = boardOf({output("out"_s)});
        setup.faults = {{SimulatedBoardSetup::Fault::Kind::Late, {}, {}, 5000}};
        BoardBench bench(setup);
        bench.write("out"_s, 1);
        bench.board->setPluggedIn(false);
        bench.advanceMs(100);
        QVERIFY(bench.changes.isEmpty());
        QCOMPARE(bench.client.failures(), QStringList{c_unplugged});
    }

    void levelsOutliveTheUnplugging()
    {
        BoardBench bench(boardOf({output("out"_s)}));
        bench.write("out"_s, 1);
        bench.board->setPluggedIn(false);
        bench.board->setPluggedIn(true);
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, "out"_s}}), (QVariantMap{{"value"_s, 1}}));
    }
};

QTEST_GUILESS_MAIN(TestUnplugging)

#include "tst_unplugging.moc"
