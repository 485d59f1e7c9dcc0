#include "literals.h"

#include <devices/scheduler.h>

#include <QTest>

class TestScheduler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_scheduler = std::make_unique<ManualScheduler>();
        m_log.clear();
    }

    void timeStandsStillUntilItIsMoved()
    {
        QCOMPARE(m_scheduler->now(), qint64{0});
        m_scheduler->advance(5);
        m_scheduler->advance(7);
        QCOMPARE(m_scheduler->now(), qint64{12});
    }

    void appointmentsAreKeptInTheOrderOfTheirTimes()
    {
        note("c", 30);
        note("a", 10);
        note("b", 20);
        m_scheduler->advance(100);
        QCOMPARE(m_log, (QStringList{"a at 10"_s, "b at 20"_s, "c at 30"_s}));
    }

    void appointmentsOfOneTimeAreKeptInTheOrderOfTheirMaking()
    {
        for (const char* name : {"x", "a", "m"}) {
            note(name, 10);
        }
        m_scheduler->advance(10);
        QCOMPARE(m_log, (QStringList{"x at 10"_s, "a at 10"_s, "m at 10"_s}));
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
        m_scheduler->advance(0);
        QCOMPARE(m_log, QStringList{"a at 50"_s});
        QCOMPARE(m_scheduler->now(), qint64{50});
    }

    void aCancelledAppointmentIsNotKept()
    {
        const Scheduler::Appointment first = note("a", 10);
        note("b", 10);
        m_scheduler->cancel(first);
        m_scheduler->advance(10);
        QCOMPARE(m_log, QStringList{"b at 10"_s});
    }

    void cancellingWhatIsOverOrNothingDoesNothing()
    {
        const Scheduler::Appointment first = note("a", 10);
        m_scheduler->advance(10);
        note("b", 20);
        m_scheduler->cancel(first);
        m_scheduler->cancel(first);
        m_scheduler->cancel(Scheduler::Appointment());
        m_scheduler->advance(10);
        QCOMPARE(m_log, (QStringList{"a at 10"_s, "b at 20"_s}));
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
        Scheduler::Appointment second;
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

private:
    Scheduler::Appointment note(const char* name, qint64 timeUs)
    {
        return m_scheduler->at(timeUs, [this, name] {
            m_log.append("%1 at %2"_s.arg(QString::fromLatin1(name)).arg(m_scheduler->now()));
        });
    }

    std::unique_ptr<ManualScheduler> m_scheduler;
    QStringList m_log;
};

QTEST_GUILESS_MAIN(TestScheduler)

#include "tst_scheduler.moc"
