#include "literals.h"
#include "recording_client.h"
#include "recording_device.h"
#include "workbench.h"

#include <QElapsedTimer>
#include <QTest>

class TestDeviceDeadlines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_client = std::make_unique<RecordingClient>();
        m_device = std::make_unique<RecordingDevice>();
    }

    void cleanup()
    {
        if (m_client != nullptr) {
            m_client->then = {};
        }
        m_device.reset();
    }

    void aRequestWithoutReplyFailsWhenItsTimeHasPassed()
    {
        QElapsedTimer clock;
        clock.start();
        send(1, "getValue"_s, "line0"_s, 20);
        QTRY_COMPARE(m_client->heard.size(), 1);
        QVERIFY(clock.elapsed() >= 20);
        QCOMPARE(m_client->failures(),
                 QStringList{"no reply to \"getValue\" of channel \"line0\" within 20 ms"_s});
        QCOMPARE(m_device->cancelled, QVector<quint64>{1});
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void aRequestWithoutChannelIsNamedByItsInstruction()
    {
        send(1, "listenToAll"_s, QString(), 1);
        QTRY_COMPARE(m_client->failures(), QStringList{"no reply to \"listenToAll\" within 1 ms"_s});
    }

    void namesWithPercentSignsAppearAsTheyAre()
    {
        send(1, "get%2"_s, "50%1"_s, 1);
        QTRY_COMPARE(m_client->failures(),
                     QStringList{"no reply to \"get%2\" of channel \"50%1\" within 1 ms"_s});
    }

    void aReplyAfterTheTimeIsDropped()
    {
        send(1, "getValue"_s, "line0"_s, 1);
        QTRY_COMPARE(m_client->heard.size(), 1);
        m_device->reply(1, {{"value"_s, 1}});
        deliver();
        QCOMPARE(m_client->heard.size(), 1);
    }

    void requestsFailInTheOrderOfTheirDeadlines()
    {
        send(1, "getValue"_s, "line0"_s, 30);
        send(2, "getValue"_s, "line0"_s, 10);
        send(3, "getValue"_s, "line0"_s, 20);
        QTRY_COMPARE(m_client->heard.size(), 3);
        QCOMPARE(m_client->ids(), (QVector<quint64>{2, 3, 1}));
    }

    void theFirstReplyEndsTheWaitOfARecurringRequest()
    {
        send(1, "listenEvents"_s, "line0"_s, 10);
        m_device->reply(1, {{"value"_s, 1}});
        deliver();
        send(2, "getValue"_s, "line0"_s, 30);
        QTRY_COMPARE(m_client->failures().size(), 1);
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2}));
        QCOMPARE(m_device->pendingRequests(), 1);
    }

    void aReplyEndsTheWaitOfItsOwnRequestOnly()
    {
        send(1, "getValue"_s, "line0"_s, 10);
        send(2, "getValue"_s, "line1"_s, 10);
        m_device->reply(1, {});
        QTRY_COMPARE(m_client->heard.size(), 2);
        QCOMPARE(m_client->failures(),
                 QStringList{"no reply to \"getValue\" of channel \"line1\" within 10 ms"_s});
    }

    void aCancelledRequestHasNoDeadline()
    {
        send(1, "getValue"_s, "line0"_s, 1);
        send(2, "getValue"_s, "line1"_s, 20);
        m_device->cancel(1);
        QTRY_COMPARE(m_client->heard.size(), 1);
        QCOMPARE(m_client->ids(), QVector<quint64>{2});
    }

    void withoutALimitARequestWaits_data()
    {
        QTest::addColumn<int>("limit");
        QTest::newRow("none") << 0;
        QTest::newRow("negative") << -5;
    }

    void withoutALimitARequestWaits()
    {
        QFETCH(int, limit);
        send(1, "getValue"_s, "line0"_s, limit);
        send(2, "getValue"_s, "line0"_s, 20);
        QTRY_COMPARE(m_client->heard.size(), 1);
        QCOMPARE(m_client->ids(), QVector<quint64>{2});
        QCOMPARE(m_device->pendingRequests(), 1);
    }

    void theLongestLimitDoesNotPassAtOnce()
    {
        send(1, "getValue"_s, "line0"_s, std::numeric_limits<int>::max());
        send(2, "getValue"_s, "line0"_s, 10);
        QTRY_COMPARE(m_client->heard.size(), 1);
        QCOMPARE(m_client->ids(), QVector<quint64>{2});
    }

    void aRequestSentFromAFailureHasItsOwnDeadline()
    {
        m_client->then = [this](const RecordingClient::Heard& what) {
            if (what.id < 5) {
                send(what.id + 1, "getValue"_s, "line0"_s, 2);
            }
        };
        send(1, "getValue"_s, "line0"_s, 2);
        QTRY_COMPARE(m_client->heard.size(), 5);
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2, 3, 4, 5}));
    }

    void aLostDeviceFailsARequestOnce()
    {
        send(1, "getValue"_s, "line0"_s, 10);
        m_device->setDisconnected("cable pulled"_s);
        send(2, "getValue"_s, "line0"_s, 20);
        deliver();
        m_device->setConnected();
        send(3, "getValue"_s, "line0"_s, 30);
        QTRY_COMPARE(m_client->heard.size(), 3);
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2, 3}));
    }

private:
    void send(quint64 id, const QString& instruction, const QString& channel, int timeoutMs)
    {
        m_device->send(id, instruction, {{"channel"_s, channel}}, timeoutMs, m_client.get());
    }

    std::unique_ptr<RecordingClient> m_client;
    std::unique_ptr<RecordingDevice> m_device;
};

QTEST_GUILESS_MAIN(TestDeviceDeadlines)

#include "tst_device_deadlines.moc"
