#include "boards.h"
#include "recording_client.h"
#include "workbench.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

/// The board in real time: what must happen is waited for, and never comes too early.
class TestRealTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theClockRunsForwards()
    {
        const SteadyScheduler scheduler;
        const qint64 start = scheduler.now();
        QTRY_VERIFY(scheduler.now() > start);
    }

    void appointmentsAreKeptInOrderAndNotTooEarly()
    {
        SteadyScheduler scheduler;
        QVector<qint64> due;
        QVector<qint64> kept;
        for (const qint64 ms : {30, 5, 15}) {
            const qint64 time = scheduler.now() + ms * 1000;
            scheduler.at(time, [&, time] {
                due.append(time);
                kept.append(scheduler.now());
            });
        }
        QTRY_COMPARE(kept.size(), 3);
        QVERIFY(std::is_sorted(due.cbegin(), due.cend()));
        for (int i = 0; i < kept.size(); ++i) {
            QVERIFY(kept.at(i) >= due.at(i));
        }
    }

    void aTimeThatHasPassedIsKeptFromTheEventLoop()
    {
        SteadyScheduler scheduler;
        bool kept = false;
        scheduler.at(-1000, [&kept] { kept = true; });
        QVERIFY(!kept);
        QTRY_VERIFY(kept);
    }

    void aCancelledAppointmentDoesNotHoldUpTheNext()
    {
        SteadyScheduler scheduler;
        QStringList kept;
        const auto first = scheduler.at(scheduler.now() + 1000, [&] { kept.append("first"_s); });
        scheduler.at(scheduler.now() + 5000, [&] { kept.append("second"_s); });
        scheduler.cancel(first);
        QTRY_COMPARE(kept, QStringList{"second"_s});
    }

    void anActionThatMakesItsSuccessorAtOnceLetsTheEventLoopGoOn()
    {
        SteadyScheduler scheduler;
        bool stop = false;
        std::function<void()> again = [&] {
            if (!stop) {
                scheduler.at(scheduler.now(), again);
            }
        };
        again();
        QTimer::singleShot(0, this, [&stop] { stop = true; });
        QTRY_VERIFY(stop);
    }

    void aLineBlinksAndIsHeard()
    {
        SteadyScheduler scheduler;
        RecordingClient client;
        SimulatedBoard board(boardOf({output("out"_s)}), &scheduler);
        board.send(1, "listenEvents"_s, {{"channel"_s, "out"_s}}, 1000, &client);
        QVector<qint64> times;
        connect(&board, &DDevice::levelChanged, this, [&](int, int, qint64 timeUs) { times.append(timeUs); });
        const qint64 start = scheduler.now();
        board.send(2, "setBlink"_s,
                   {{"channel"_s, "out"_s}, {"values"_s, 1}, {"pulseOnWidth"_s, 20}, {"pulseOffWidth"_s, 20}},
                   1000, &client);
        QTRY_VERIFY(client.heard.size() >= 6);
        for (int phase = 0; phase < times.size(); ++phase) {
            QVERIFY(times.at(phase) >= start + phase * 20000);
        }
        const QVariantList heard = client.replied("values"_s);
        QCOMPARE(heard.at(0), QVariant(QVariantList{0}));
        QVERIFY(client.failures().isEmpty());
    }

    void aSilentLineRunsIntoTheTimeLimit()
    {
        SimulatedBoardSetup setup = boardOf({output("out"_s)});
        setup.faults = {{SimulatedBoardSetup::Fault::Kind::Silent, {}, {}, 0}};
        SteadyScheduler scheduler;
        RecordingClient client;
        SimulatedBoard board(setup, &scheduler);
        board.send(1, "getValue"_s, {{"channel"_s, "out"_s}}, 10, &client);
        QTRY_COMPARE(client.failures(),
                     QStringList{"no reply to \"getValue\" of channel \"out\" within 10 ms"_s});
    }

    void aLateLineAnswersWithinTheTimeLimit()
    {
        SimulatedBoardSetup setup = boardOf({output("out"_s)});
        setup.faults = {{SimulatedBoardSetup::Fault::Kind::Late, {}, {}, 10000}};
        SteadyScheduler scheduler;
        RecordingClient client;
        SimulatedBoard board(setup, &scheduler);
        QElapsedTimer clock;
        clock.start();
        board.send(1, "getValue"_s, {{"channel"_s, "out"_s}}, 5000, &client);
        QTRY_COMPARE(client.replied("value"_s), QVariantList{0});
        QVERIFY(clock.elapsed() >= 10);
    }
};

QTEST_GUILESS_MAIN(TestRealTime)

#include "tst_real_time.moc"
