#include "literals.h"
#include "recording_client.h"
#include "recording_device.h"
#include "workbench.h"

#include <QSignalSpy>
#include <QTest>

class TestDevice : public QObject
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

    void listeningInstructionsRecur()
    {
        QVERIFY(DDevice::isRecurring("listenEvents"_s));
        QVERIFY(DDevice::isRecurring("listenToAll"_s));
        QVERIFY(!DDevice::isRecurring("getValue"_s));
        QVERIFY(!DDevice::isRecurring("setValues"_s));
        QVERIFY(!DDevice::isRecurring("setBlink"_s));
        QVERIFY(!DDevice::isRecurring("listenevents"_s));
        QVERIFY(!DDevice::isRecurring(QString()));
    }

    void aRequestReachesTheDeviceAsItWasSent()
    {
        send(1, "getValue"_s, {{"channel"_s, "line0"_s}});
        QCOMPARE(m_device->requests.size(), 1);
        QCOMPARE(m_device->requests.at(0).id, quint64{1});
        QCOMPARE(m_device->requests.at(0).instruction, "getValue"_s);
        QCOMPARE(m_device->requests.at(0).arguments, (QVariantMap{{"channel"_s, "line0"_s}}));
        QCOMPARE(m_device->pendingRequests(), 1);
    }

    void repliesComeFromTheEventLoopOnly()
    {
        m_device->onRequest = [this](const auto& request) { m_device->reply(request.id, {{"value"_s, 1}}); };
        send(1, "getValue"_s);
        QVERIFY(m_client->heard.isEmpty());
        deliver();
        QCOMPARE(m_client->replied("value"_s), QVariantList{1});
    }

    void failuresComeFromTheEventLoopOnly()
    {
        m_device->onRequest = [this](const auto& request) { m_device->fail(request.id, "broken"_s); };
        send(1, "getValue"_s);
        QVERIFY(m_client->heard.isEmpty());
        deliver();
        QCOMPARE(m_client->failures(), QStringList{"broken"_s});
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void aOneShotRequestIsOverWithItsFirstReply()
    {
        send(1, "getValue"_s);
        m_device->reply(1, {{"value"_s, 1}});
        m_device->reply(1, {{"value"_s, 2}});
        m_device->fail(1, "broken"_s);
        deliver();
        m_device->reply(1, {{"value"_s, 3}});
        deliver();
        QCOMPARE(m_client->replied("value"_s), QVariantList{1});
        QCOMPARE(m_client->heard.size(), 1);
        QCOMPARE(m_device->pendingRequests(), 0);
        QVERIFY(m_device->cancelled.isEmpty());
    }

    void aRecurringRequestIsAnsweredUntilItFails()
    {
        send(1, "listenEvents"_s);
        for (const int value : {1, 2, 3}) {
            m_device->reply(1, {{"value"_s, value}});
        }
        deliver();
        QCOMPARE(m_client->replied("value"_s), (QVariantList{1, 2, 3}));
        QCOMPARE(m_device->pendingRequests(), 1);
        m_device->fail(1, "broken"_s);
        m_device->reply(1, {{"value"_s, 4}});
        deliver();
        QCOMPARE(m_client->heard.size(), 4);
        QCOMPARE(m_client->failures(), QStringList{"broken"_s});
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void answersOfSeveralRequestsComeInTheirOrder()
    {
        for (const quint64 id : {1U, 2U, 3U}) {
            send(id, "getValue"_s);
        }
        for (const quint64 id : {2U, 3U, 1U}) {
            m_device->reply(id, {});
        }
        deliver();
        QCOMPARE(m_client->ids(), (QVector<quint64>{2, 3, 1}));
    }

    void answersToUnknownRequestsAreDropped()
    {
        m_device->reply(77, {});
        m_device->fail(78, "broken"_s);
        deliver();
        QVERIFY(m_client->heard.isEmpty());
    }

    void cancellingIsToldToTheDeviceAndSilencesTheClient()
    {
        send(1, "listenEvents"_s);
        m_device->reply(1, {});
        m_device->cancel(1);
        QCOMPARE(m_device->cancelled, QVector<quint64>{1});
        QCOMPARE(m_device->pendingRequests(), 0);
        deliver();
        QVERIFY(m_client->heard.isEmpty());
    }

    void cancellingWhatIsOverDoesNothing()
    {
        send(1, "getValue"_s);
        m_device->reply(1, {});
        deliver();
        m_device->cancel(1);
        m_device->cancel(1);
        m_device->cancel(99);
        QVERIFY(m_device->cancelled.isEmpty());
    }

    void losingTheDeviceFailsPendingRequestsInTheOrderOfTheirSending()
    {
        QVector<quint64> sent;
        for (quint64 id = 1; id <= 40; ++id) {
            send(id, id % 2 == 0 ? "getValue"_s : "listenEvents"_s);
            sent.append(id);
        }
        m_device->setDisconnected("cable pulled"_s);
        QVERIFY(m_client->heard.isEmpty());
        deliver();
        QCOMPARE(m_client->ids(), sent);
        QCOMPARE(m_client->failures().count("cable pulled"_s), 40);
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void losingTheDeviceEndsItsWorkOnPendingRequests()
    {
        send(1, "listenEvents"_s);
        m_device->setDisconnected("cable pulled"_s);
        deliver();
        QCOMPARE(m_device->cancelled, QVector<quint64>{1});
    }

    void answersGivenBeforeTheLossStillArrive()
    {
        send(1, "getValue"_s);
        send(2, "getValue"_s);
        m_device->reply(1, {{"value"_s, 1}});
        m_device->setDisconnected("cable pulled"_s);
        deliver();
        QCOMPARE(m_client->replied("value"_s), QVariantList{1});
        QCOMPARE(m_client->failures(), QStringList{"cable pulled"_s});
        QVERIFY(m_device->cancelled.contains(2));
    }

    void aRequestToALostDeviceFailsWithoutReachingIt()
    {
        m_device->setDisconnected("cable pulled"_s);
        send(1, "getValue"_s);
        QVERIFY(m_client->heard.isEmpty());
        QVERIFY(m_device->requests.isEmpty());
        deliver();
        QCOMPARE(m_client->failures(), QStringList{"cable pulled"_s});
        QVERIFY(m_device->cancelled.isEmpty());
    }

    void cancellingARequestToALostDeviceReachesNoDevice()
    {
        m_device->setDisconnected("cable pulled"_s);
        send(1, "getValue"_s);
        m_device->cancel(1);
        deliver();
        QVERIFY(m_client->heard.isEmpty());
        QVERIFY(m_device->cancelled.isEmpty());
    }

    void theConnectionIsAnnouncedOnlyWhenItChanges()
    {
        QSignalSpy changed(m_device.get(), &DDevice::connectedChanged);
        QVERIFY(m_device->isConnected());
        QCOMPARE(m_device->connectionProblem(), QString());
        m_device->setConnected();
        QCOMPARE(changed.count(), 0);
        m_device->setDisconnected("cable pulled"_s);
        m_device->setDisconnected("board burnt"_s);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toBool(), false);
        QVERIFY(!m_device->isConnected());
        QCOMPARE(m_device->connectionProblem(), "board burnt"_s);
        m_device->setConnected();
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed.at(1).at(0).toBool(), true);
        QCOMPARE(m_device->connectionProblem(), QString());
    }

    void aDeviceThatIsBackTakesRequestsAgain()
    {
        m_device->setDisconnected("cable pulled"_s);
        m_device->setConnected();
        send(1, "getValue"_s);
        m_device->reply(1, {{"value"_s, 1}});
        deliver();
        QCOMPARE(m_client->replied("value"_s), QVariantList{1});
    }

    void requestsOfBeforeTheLossStayFailedWhenTheDeviceIsBackAtOnce()
    {
        send(1, "listenEvents"_s);
        m_device->setDisconnected("cable pulled"_s);
        m_device->setConnected();
        deliver();
        QCOMPARE(m_client->failures(), QStringList{"cable pulled"_s});
    }

    void aDeviceThatGoesFailsWhatIsPending()
    {
        send(1, "getValue"_s);
        send(2, "listenEvents"_s);
        m_device.reset();
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2}));
        QCOMPARE(m_client->failures(), (QStringList{"the device is gone"_s, "the device is gone"_s}));
    }

    void aDeviceThatGoesDropsAnswersUnderWay()
    {
        send(1, "getValue"_s);
        m_device->reply(1, {});
        m_device.reset();
        deliver();
        QCOMPARE(m_client->failures(), QStringList{"the device is gone"_s});
        QCOMPARE(m_client->heard.size(), 1);
    }

    void aClientMayCancelItsOtherRequestsWhileTheDeviceGoes()
    {
        send(1, "getValue"_s);
        send(2, "getValue"_s);
        auto* device = m_device.release();
        m_client->then = [device](const RecordingClient::Heard& what) { device->cancel(3 - what.id); };
        delete device;
        QCOMPARE(m_client->heard.size(), 1);
    }

private:
    void send(quint64 id, const QString& instruction, const QVariantMap& arguments = {})
    {
        m_device->send(id, instruction, arguments, 0, m_client.get());
    }

    std::unique_ptr<RecordingClient> m_client;
    std::unique_ptr<RecordingDevice> m_device;
};

QTEST_GUILESS_MAIN(TestDevice)

#include "tst_device.moc"
