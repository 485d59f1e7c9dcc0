#include "literals.h"
#include "manual_scheduler.h"
#include "rows.h"

#include <array>
#include <memory>

class TestScheduler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_scheduler = std::make_unique<ManualScheduler>();
        m_log.clear();
    }

    void appointmentsAreKeptInTheOrderOfTheirTimesThenOfTheirMaking()
    {
        note("c", 30);
        for (const char* name : {"x", "a", "m"}) {
            note(name, 10);
        }
        note("b", 20);
        m_scheduler->advance(100);
        QCOMPARE(m_log, (QStringList{"x at 10"_s, "a at 10"_s, "m at 10"_s, "b at 20"_s, "c at 30"_s}));
    }

    void anAppointmentIsKeptOnceAndNotBeforeItsTime()
    {
        note("a", 10);
        m_scheduler->advance(9);
        QVERIFY(m_log.isEmpty());
        m_scheduler->advance(1);
        m_scheduler->advance(100);
        QCOMPARE(m_log, QStringList{"a at 10"_s});
    }

    void aTimeThatHasPassedCountsAsNow()
    {
        m_scheduler->advance(50);
        note("a", 10);
        QVERIFY(m_log.isEmpty());
        QCOMPARE(m_scheduler->now(), qint64{50});
        m_scheduler->advance(0);
        QCOMPARE(m_log, QStringList{"a at 50"_s});
        QCOMPARE(m_scheduler->now(), qint64{50});
    }

    void cancellingTakesAnAppointmentBackOnce()
    {
        const DScheduler::Appointment first = note("a", 10);
        const DScheduler::Appointment taken = note("b", 10);
        m_scheduler->cancel(taken);
        m_scheduler->advance(10);
        note("c", 20);
        for (const auto& appointment : {first, taken, DScheduler::Appointment()}) {
            m_scheduler->cancel(appointment);
        }
        m_scheduler->advance(10);
        QCOMPARE(m_log, (QStringList{"a at 10"_s, "c at 20"_s}));
    }

    void anActionMayMakeItsSuccessor()
    {
        m_scheduler->at(10, [this] {
            note("b", 20);
            note("now", 10);
        });
        m_scheduler->advance(20);
        QCOMPARE(m_log, (QStringList{"now at 10"_s, "b at 20"_s}));
    }

    void anActionMayCancelAnotherOfItsTime()
    {
        DScheduler::Appointment second;
        m_scheduler->at(10, [&] { m_scheduler->cancel(second); });
        second = note("b", 10);
        m_scheduler->advance(10);
        QVERIFY(m_log.isEmpty());
    }

    void timeNeverRunsBackWhereAnActionMovesIt()
    {
        m_scheduler->at(10, [this] { m_scheduler->advance(100); });
        note("b", 50);
        m_scheduler->advance(20);
        QCOMPARE(m_log, QStringList{"b at 50"_s});
        QCOMPARE(m_scheduler->now(), qint64{110});
    }

    void theWallClockKeepsItsDistance()
    {
        QCOMPARE(m_scheduler->wallClock(0), ManualScheduler::c_wallClockOffsetUs);
        m_scheduler->advance(1234567);
        QCOMPARE(m_scheduler->wallClock(m_scheduler->now()), ManualScheduler::c_wallClockOffsetUs + 1234567);
    }

    // The scheduler of real time: what must happen is waited for, and never comes too early.

    void theClockOfAllThreadsIsOneAndShowsTheTimeOfDay()
    {
        const DSteadyScheduler scheduler;
        qint64 otherNow = 0;
        qint64 otherWallClock = 0;
        bool sameEverywhere = true;
        const qint64 before = scheduler.now();
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            const DSteadyScheduler other;
            otherNow = other.now();
            otherWallClock = other.wallClock(0);
            for (int later = 0; later < 1000; ++later) {
                sameEverywhere = sameEverywhere && DSteadyScheduler().wallClock(0) == otherWallClock;
            }
        }));
        thread->start();
        QVERIFY(thread->wait());
        QVERIFY(before <= otherNow);
        QVERIFY(otherNow <= scheduler.now());
        QCOMPARE(otherWallClock, scheduler.wallClock(0));
        QVERIFY(sameEverywhere);
        const qint64 offMs =
            scheduler.wallClock(scheduler.now()) / 1000 - QDateTime::currentMSecsSinceEpoch();
        QVERIFY2(std::abs(offMs) < 60000, qPrintable("%1 ms"_s.arg(offMs)));
    }

    void realAppointmentsAreKeptInOrderAndNotTooEarly()
    {
        DSteadyScheduler scheduler;
        const qint64 start = scheduler.now() + 1000;
        const std::array<qint64, 6> offsets = {30000, 5000, 15000, 301, 300, 700};
        QVector<qint64> kept;
        QVector<qint64> lateness;
        for (const qint64 offset : offsets) {
            scheduler.at(start + offset, [&, offset] {
                kept.append(offset);
                lateness.append(scheduler.now() - start - offset);
            });
        }
        QTRY_COMPARE(kept, (QVector<qint64>{300, 301, 700, 5000, 15000, 30000}));
        QVERIFY(*std::min_element(lateness.cbegin(), lateness.cend()) >= 0);
        std::sort(lateness.begin(), lateness.end());
        qInfo("appointments were kept %lld us late, the latest %lld us", lateness.at(lateness.size() / 2),
              lateness.constLast());
    }

    void theEventLoopRestsUntilAnAppointment()
    {
        DSteadyScheduler scheduler;
        QEventLoop loop;
        int passes = 0;
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                [&passes] { ++passes; });
        scheduler.at(scheduler.now() + 50000, [&loop] { loop.quit(); });
        loop.exec();
        QVERIFY2(passes < 10, qPrintable("%1 passes"_s.arg(passes)));
    }

    void aRealTimeThatHasPassedIsKeptFromTheEventLoop()
    {
        DSteadyScheduler scheduler;
        int kept = 0;
        scheduler.at(-1000, [&kept] { ++kept; });
        scheduler.at(0, [&kept] { ++kept; });
        scheduler.at(scheduler.now(), [&kept] { ++kept; });
        QCOMPARE(kept, 0);
        QTRY_COMPARE(kept, 3);
    }

    void aCancelledAppointmentDoesNotHoldUpTheNext()
    {
        DSteadyScheduler scheduler;
        QStringList kept;
        const auto first = scheduler.at(scheduler.now() + 1000, [&] { kept.append("first"_s); });
        scheduler.at(scheduler.now() + 5000, [&] { kept.append("second"_s); });
        scheduler.cancel(first);
        QTRY_COMPARE(kept, QStringList{"second"_s});
    }

    void anActionThatMakesItsSuccessorAtOnceLetsTheEventLoopGoOn_data()
    {
        const Rows<qint64> row("lateUs");
        row("now", {0});
        row("for a time that has passed", {1000});
    }
    void anActionThatMakesItsSuccessorAtOnceLetsTheEventLoopGoOn()
    {
        QFETCH(qint64, lateUs);
        DSteadyScheduler scheduler;
        bool stop = false;
        std::function<void()> again = [&] {
            if (!stop) {
                scheduler.at(scheduler.now() - lateUs, again);
            }
        };
        again();
        QTimer::singleShot(1, this, [&stop] { stop = true; });
        QTRY_VERIFY(stop);
    }

private:
    DScheduler::Appointment note(const char* name, qint64 timeUs)
    {
        return m_scheduler->at(timeUs, [this, name] {
            m_log.append("%1 at %2"_s.arg(QString::fromLatin1(name)).arg(m_scheduler->now()));
        });
    }

    std::unique_ptr<ManualScheduler> m_scheduler;
    QStringList m_log;
};

QTEST_GUILESS_MAIN(TestScheduler)
#include "test_scheduler.moc"
