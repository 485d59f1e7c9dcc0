#include "device_fixture.h"
#include "rows.h"

#include <limits>

class TestDeviceDeadlines : public DeviceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aRequestWithoutReplyFailsWhenItsTimeHasPassed()
    {
        advanceMs(7);
        send(1, "get%2"_s, {}, 20); // a name may hold a percent sign
        m_scheduler->advance(19999);
        QVERIFY(m_client->heard.isEmpty());
        m_scheduler->advance(1);
        QCOMPARE(m_client->failures(), QStringList{"no reply to \"get%2\" within 20 ms"_s});
        QCOMPARE(m_client->heard.constFirst().failure.kind, DFailure::Kind::TimedOut);
        QCOMPARE(m_device->cancelled, QVector<quint64>{1});
        QCOMPARE(m_device->pendingRequests(), 0);
        m_device->reply(1, {{"value"_s, 1}});
        deliver();
        QCOMPARE(m_client->heard.size(), 1);
    }

    void requestsFailInTheOrderOfTheirDeadlines()
    {
        send(1, "getValue"_s, {}, 30);
        send(2, "getValue"_s, {}, 10);
        send(3, "getValue"_s, {}, 20);
        send(4, "getValue"_s, {}, 40);
        advanceMs(30);
        QCOMPARE(m_client->ids(), (QVector<quint64>{2, 3, 1}));
    }

    void theFirstReplyEndsTheWait()
    {
        send(1, "listenEvents"_s, {}, 10);
        send(2, "getValue"_s, {}, 10);
        send(3, "getValue"_s, {}, 10);
        m_device->reply(1, {{"value"_s, 1}});
        m_device->reply(2, {{"value"_s, 2}});
        deliver();
        advanceMs(100);
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2, 3}));
        QCOMPARE(m_client->failures().size(), 1);
        QCOMPARE(m_device->pendingRequests(), 1);
    }

    void aCancelledRequestHasNoDeadline()
    {
        send(1, "getValue"_s, {}, 1);
        send(2, "getValue"_s, {}, 20);
        m_device->cancel(1);
        advanceMs(20);
        QCOMPARE(m_client->ids(), QVector<quint64>{2});
    }

    void aDeadlineOutlivesManyThatAreNoMore()
    {
        send(1, "getValue"_s, {}, 20);
        send(2, "getValue"_s);
        for (quint64 id = 3; id < 500; ++id) {
            send(id, "getValue"_s, {}, 10);
            m_device->cancel(id);
        }
        advanceMs(19);
        QVERIFY(m_client->heard.isEmpty());
        advanceMs(1);
        QCOMPARE(m_client->ids(), QVector<quint64>{1});
    }

    void withoutALimitARequestWaits_data()
    {
        const Rows<int> row("limit");
        row("none", 0);
        row("negative", -5);
        row("the longest", std::numeric_limits<int>::max());
    }
    void withoutALimitARequestWaits()
    {
        QFETCH(int, limit);
        send(1, "getValue"_s, {}, limit);
        constexpr qint64 dayMs = 24 * 3600 * 1000;
        advanceMs(dayMs);
        QVERIFY(m_client->heard.isEmpty());
        QCOMPARE(m_device->pendingRequests(), 1);
    }

    void aRequestSentFromAFailureHasItsOwnDeadline()
    {
        m_client->then = [this](const RecordingClient::Heard& what) {
            if (what.id < 5) {
                send(what.id + 1, "getValue"_s, {}, 2);
            }
        };
        send(1, "getValue"_s, {}, 2);
        advanceMs(9);
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2, 3, 4}));
        advanceMs(1);
        QCOMPARE(m_client->heard.size(), 5);
    }

    void aLostDeviceFailsARequestOnce()
    {
        send(1, "getValue"_s, {}, 10);
        m_device->lose("cable pulled"_s);
        send(2, "getValue"_s, {}, 20);
        deliver();
        m_device->restore();
        send(3, "getValue"_s, {}, 30);
        advanceMs(30);
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2, 3}));
    }

    void aDeviceThatGoesLeavesNoDeadline()
    {
        send(1, "getValue"_s, {}, 20);
        send(2, "getValue"_s, {}, 10);
        m_device.reset();
        QVERIFY(!m_scheduler->advanceToNext());
        QCOMPARE(m_client->failures().count("the device is gone"_s), 2);
    }
};

QTEST_GUILESS_MAIN(TestDeviceDeadlines)
#include "test_device_deadlines.moc"
