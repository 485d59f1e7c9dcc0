#include "board_bench.h"
#include "rows.h"

class TestFaults : public QObject
{
    Q_OBJECT

    using Fault = SimulatedBoardSetup::Fault;

    static SimulatedBoardSetup faulty(const QVector<Fault>& faults)
    {
        SimulatedBoardSetup setup = boardOf({output("out"_s), input("in"_s, 1)});
        setup.faults = faults;
        return setup;
    }

    static inline const QVariantMap c_out{{"channel"_s, "out"_s}};
    static inline const QVariantMap c_high{{"channel"_s, "out"_s}, {"values"_s, 1}};
    static inline const QVariantMap c_in{{"channel"_s, "in"_s}};

private Q_SLOTS:
    void aSilentLineNeverAnswers()
    {
        BoardBench bench(faulty({{Fault::Kind::Silent, "out"_s, {}, 0}}));
        bench.send("getValue"_s, c_out);
        bench.send("setValues"_s, c_high);
        bench.advanceMs(100000);
        QVERIFY(bench.client.heard.isEmpty());
        QCOMPARE(bench.board->pendingRequests(), 2);
        QCOMPARE(bench.level(0), 0);
    }

    void aLateLineAnswersWhenItsDelayHasPassed()
    {
        BoardBench bench(faulty({{Fault::Kind::Late, "out"_s, {}, 5000}}));
        bench.send("setValues"_s, c_high);
        bench.scheduler.advance(4999);
        deliver();
        QVERIFY(bench.client.heard.isEmpty());
        QCOMPARE(bench.level(0), 0);
        bench.scheduler.advance(1);
        deliver();
        QCOMPARE(bench.client.heard.size(), 1);
        QCOMPARE(bench.changes, (QVector<BoardBench::Change>{{0, 1, 5000}}));
    }

    void aLateRequestThatWasCancelledIsNotCarriedOut()
    {
        BoardBench bench(faulty({{Fault::Kind::Late, {}, {}, 5000}}));
        const quint64 id = bench.send("setValues"_s, c_high);
        bench.board->cancel(id);
        bench.advanceMs(100);
        QVERIFY(bench.changes.isEmpty());
    }

    void aLateListenerHearsWhatHappensAfterwards()
    {
        BoardBench bench(faulty({{Fault::Kind::Late, {}, "listenEvents"_s, 5000}}));
        bench.send("listenEvents"_s, c_in);
        bench.advanceMs(5);
        bench.board->setInput(1, 0);
        deliver();
        QCOMPARE(bench.client.replied("values"_s),
                 (QVariantList{QVariant(QVariantList{1}), QVariant(QVariantList{0})}));
    }

    void aRefusalNamesInstructionAndChannel()
    {
        BoardBench bench(faulty({{Fault::Kind::Refused, {}, {}, 0}}));
        QCOMPARE(bench.ask("getValue"_s, c_in),
                 (QVariantMap{{"failure"_s, "the board refuses \"getValue\" of channel \"in\""_s}}));
        QCOMPARE(bench.ask("listenToAll"_s, {}),
                 (QVariantMap{{"failure"_s, "the board refuses \"listenToAll\""_s}}));
        QCOMPARE(bench.board->pendingRequests(), 0);
    }

    void aFaultStrikesWhatItNamesOnly_data()
    {
        const Rows<QString, QString, bool, bool, bool> row("line", "instruction", "readsOut", "readsIn",
                                                           "listensToAll");
        row("a line", "in", QString(), true, false, true);
        row("an instruction", QString(), "getValue", false, false, true);
        row("both", "in", "getValue", true, false, true);
        row("another instruction", "in", "setValues", true, true, true);
        row("anything", QString(), QString(), false, false, false);
    }
    void aFaultStrikesWhatItNamesOnly()
    {
        const auto [line, instruction, readsOut, readsIn, listensToAll] =
            Rows<QString, QString, bool, bool, bool>::values();
        BoardBench bench(faulty({{Fault::Kind::Refused, line, instruction, 0}}));
        QCOMPARE(bench.ask("getValue"_s, c_out).contains("value"_s), readsOut);
        QCOMPARE(bench.ask("getValue"_s, c_in).contains("value"_s), readsIn);
        QCOMPARE(bench.ask("listenToAll"_s, {}).contains("value"_s), listensToAll);
    }

    void theFirstFaultThatMatchesStrikes()
    {
        BoardBench bench(
            faulty({{Fault::Kind::Wrong, "in"_s, {}, 0}, {Fault::Kind::Refused, "in"_s, {}, 0}}));
        QCOMPARE(bench.ask("getValue"_s, c_in), (QVariantMap{{"garbled"_s, true}}));
    }

    void aBoardThatGoesLeavesNoLateRequest()
    {
        BoardBench bench(faulty({{Fault::Kind::Late, {}, {}, 5000}}));
        bench.send("getValue"_s, c_in);
        bench.board.reset();
        QVERIFY(!bench.scheduler.advanceToNext());
        deliver();
        QCOMPARE(bench.client.failures(), QStringList{"the device is gone"_s});
        QCOMPARE(bench.client.heard.size(), 1);
    }

    void aLateLineThatMissesTheTimeLimitIsNotCarriedOut()
    {
        BoardBench bench(faulty({{Fault::Kind::Late, {}, {}, 10001}}));
        bench.board->send(1, "setValues"_s, c_high, 10, &bench.client);
        bench.advanceMs(20);
        QCOMPARE(bench.client.failures().size(), 1);
        QVERIFY(bench.changes.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestFaults)
#include "test_faults.moc"
