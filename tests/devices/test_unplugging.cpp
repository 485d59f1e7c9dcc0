#include "board_bench.h"

#include <QtTest>

class TestUnplugging : public QObject
{
    Q_OBJECT

    static inline const QString c_unplugged = "the simulated board is unplugged"_s;
    static inline const QStringList c_states = {"closed"_s, "connecting"_s, "connected"_s, "unreachable"_s};

private Q_SLOTS:
    void aBoardMayBeUnpluggedFromTheStart()
    {
        SimulatedBoardSetup setup = boardOf({input("in"_s)});
        setup.connected = false;
        BoardBench bench(setup);
        QVERIFY(!bench.board->isConnected());
        QCOMPARE(bench.board->connectionProblem().english(), c_unplugged);
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, "in"_s}}), (QVariantMap{{"failure"_s, c_unplugged}}));
        bench.board->setPluggedIn(true);
        QVERIFY(bench.board->isConnected());
        QCOMPARE(bench.board->connectionProblem().english(), QString());
    }

    void unpluggingFailsWhatIsPendingWhichHearsNothingWhenTheBoardIsBack()
    {
        BoardBench bench(boardOf({input("in"_s)}));
        bench.listen("in"_s);
        bench.send("listenToAll"_s, {});
        deliver();
        bench.client.heard.clear();
        bench.board->setPluggedIn(false);
        bench.board->setPluggedIn(true);
        bench.board->setInput(0, 1);
        deliver();
        QCOMPARE(bench.client.failures(), (QStringList{c_unplugged, c_unplugged}));
        QCOMPARE(bench.client.heard.size(), 2);
        QCOMPARE(bench.board->pendingRequests(), 0);
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, "in"_s}}), (QVariantMap{{"value"_s, 1}}));
    }

    void aLateRequestIsNotCarriedOutAfterTheUnplugging()
    {
        SimulatedBoardSetup setup = boardOf({output("out"_s)});
        setup.faults = {{SimulatedBoardSetup::Fault::Kind::Late, {}, {}, 5000}};
        BoardBench bench(setup);
        bench.write("out"_s, 1);
        bench.board->setPluggedIn(false);
        bench.board->setPluggedIn(true);
        bench.advanceMs(100);
        QCOMPARE(bench.level(0), 0);
        QCOMPARE(bench.client.failures(), QStringList{c_unplugged});
    }

    void levelsOutliveTheUnpluggingAndAreUnknownMeanwhile()
    {
        BoardBench bench(boardOf({output("out"_s), output("off"_s)}));
        bench.write("out"_s, 1);
        bench.advanceMs(5);
        bench.changes.clear();
        QStringList told;
        connect(bench.board.get(), &DDevice::stateChanged, this, [&] {
            told.append("%1 and %2 lines told"_s.arg(c_states.at(static_cast<int>(bench.board->state())))
                            .arg(bench.changes.size()));
        });
        bench.board->setPluggedIn(false);
        QCOMPARE(bench.changes, (QVector<BoardBench::Change>{{0, -1, 5000}, {1, -1, 5000}}));
        bench.advanceMs(5);
        bench.board->setPluggedIn(false);
        bench.board->setPluggedIn(true);
        QCOMPARE(bench.changes.mid(2), (QVector<BoardBench::Change>{{0, 1, 10000}, {1, 0, 10000}}));
        QCOMPARE(told, (QStringList{"unreachable and 2 lines told"_s, "connected and 4 lines told"_s}));
        QCOMPARE(bench.ask("getValue"_s, {{"channel"_s, "out"_s}}), (QVariantMap{{"value"_s, 1}}));
    }

    void whatHappensMeanwhileIsKnownAfterwards()
    {
        BoardBench bench(boardOf({input("in"_s)}));
        bench.board->setPluggedIn(false);
        bench.changes.clear();
        bench.advanceMs(3);
        bench.board->setInput(0, 1);
        QCOMPARE(bench.level(0), -1);
        QVERIFY(bench.changes.isEmpty());
        bench.advanceMs(5);
        bench.board->setPluggedIn(true);
        QCOMPARE(bench.changes, (QVector<BoardBench::Change>{{0, 1, 8000}})); // since when, nobody saw
    }

    void blinkingEndsWithTheUnplugging()
    {
        BoardBench bench(boardOf({output("out"_s)}));
        bench.blink("out"_s, 10, 10);
        bench.board->setPluggedIn(false);
        bench.board->setPluggedIn(true);
        bench.changes.clear();
        bench.advanceMs(100);
        QVERIFY(bench.changes.isEmpty());
    }

    void aClosedBoardTellsNothing()
    {
        for (const bool opened : {false, true}) {
            ManualScheduler scheduler;
            const auto board =
                makeSimulatedBoard(boardOf({input("in"_s, 1)}), &scheduler, DevicePlace::SameThread);
            if (opened) {
                board->open();
                board->close();
            }
            QSignalSpy changed(board.get(), &DDevice::stateChanged);
            QSignalSpy lines(board.get(), &LineDevice::lineChanged);
            board->setPluggedIn(false);
            board->setInput(0, 0);
            board->setPluggedIn(true);
            QCOMPARE(board->state(), DDevice::State::Closed);
            QVERIFY(!board->level(0).known);
            QCOMPARE(changed.count(), 0);
            QCOMPARE(lines.count(), 0);
            board->open();
            QVERIFY(board->isConnected());
            QCOMPARE(board->level(0), (LineLevel{0, 0, true}));
        }
    }

    void closingForgetsTheLevelsAndEndsBlinkingAndListening()
    {
        BoardBench bench(boardOf({output("out"_s)}));
        bench.blink("out"_s, 10, 10);
        bench.listen("out"_s);
        deliver();
        bench.changes.clear();
        bench.client.heard.clear();
        bench.board->close();
        QCOMPARE(bench.changes, (QVector<BoardBench::Change>{{0, -1, 0}}));
        bench.board->open();
        bench.advanceMs(100);
        QCOMPARE(bench.changes.size(), 2); // its level is known again, and stays
        QCOMPARE(bench.client.failures(), QStringList{"the device was closed"_s});
        QCOMPARE(bench.client.heard.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestUnplugging)
#include "test_unplugging.moc"
