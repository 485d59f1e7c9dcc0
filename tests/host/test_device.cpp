#include "device_fixture.h"
#include "rows.h"

using State = DDevice::State;
using Deeds = QVector<std::function<void(RecordingDevice&)>>;
Q_DECLARE_METATYPE(Deeds)

class TestDevice : public DeviceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aRequestReachesTheDeviceAsItWasSent()
    {
        send(1, "getValue"_s, {{"channel"_s, "line0"_s}});
        QCOMPARE(m_device->requests.size(), 1);
        QCOMPARE(m_device->requests.at(0).id, quint64{1});
        QCOMPARE(m_device->requests.at(0).instruction, "getValue"_s);
        QCOMPARE(m_device->requests.at(0).arguments, (QVariantMap{{"channel"_s, "line0"_s}}));
        QCOMPARE(m_device->pendingRequests(), 1);
    }

    void answersComeFromTheEventLoopOnly()
    {
        m_device->onRequest = [this](const auto& request) {
            if (request.id == 1) {
                m_device->reply(request.id, {{"value"_s, 1}});
            } else {
                m_device->refuse(request.id, "broken"_s);
            }
        };
        send(1, "getValue"_s);
        send(2, "getValue"_s);
        QVERIFY(m_client->heard.isEmpty());
        deliver();
        QCOMPARE(m_client->replied("value"_s), QVariantList{1});
        QCOMPARE(m_client->failures(), QStringList{"broken"_s});
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void aOneShotRequestIsOverWithItsFirstReply()
    {
        send(1, "getValue"_s);
        m_device->reply(1, {{"value"_s, 1}});
        m_device->reply(1, {{"value"_s, 2}});
        m_device->refuse(1, "broken"_s);
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
        m_device->refuse(1, "broken"_s);
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
        m_device->refuse(78, "broken"_s);
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
        m_device->lose("cable pulled"_s);
        QVERIFY(m_client->heard.isEmpty());
        QCOMPARE(m_device->cancelled, sent);
        deliver();
        QCOMPARE(m_client->ids(), sent);
        QCOMPARE(m_client->failures().count("cable pulled"_s), 40);
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void answersGivenBeforeTheLossStillArrive()
    {
        send(1, "getValue"_s);
        send(2, "getValue"_s);
        m_device->reply(1, {{"value"_s, 1}});
        m_device->lose("cable pulled"_s);
        deliver();
        QCOMPARE(m_client->replied("value"_s), QVariantList{1});
        QCOMPARE(m_client->failures(), QStringList{"cable pulled"_s});
        QVERIFY(m_device->cancelled.contains(2));
    }

    void requestsInEachStateReachTheDeviceOrFail_data()
    {
        const Rows<Deeds, State, QString, QString> row("deeds", "state", "problem", "failure");
        const auto reach = [](RecordingDevice& device) { device.setState(State::Connecting); };
        const auto pull = [](RecordingDevice& device) { device.lose("cable pulled"_s); };
        const auto burn = [](RecordingDevice& device) { device.lose("board burnt"_s); };
        const auto open = &DDevice::open;
        const auto close = &DDevice::close;
        const auto restore = &RecordingDevice::restore;
        const QString closed = "the device is closed"_s;
        row("never opened", {}, State::Closed, QString(), closed);
        row("opened", {open}, State::Connected, QString(), QString());
        row("connecting", {open, reach}, State::Connecting, QString(), QString());
        row("lost", {open, pull}, State::Unreachable, "cable pulled", "cable pulled");
        row("lost, now for another reason", {open, pull, burn}, State::Unreachable, "board burnt",
            "board burnt");
        row("back again", {open, pull, restore}, State::Connected, QString(), QString());
        row("closed", {open, close}, State::Closed, QString(), closed);
        row("closed when lost", {open, pull, close}, State::Closed, QString(), closed);
        row("opened again", {open, close, open}, State::Connected, QString(), QString());
    }
    void requestsInEachStateReachTheDeviceOrFail()
    {
        const auto [deeds, state, problem, failure] = Rows<Deeds, State, QString, QString>::values();
        m_device = std::make_unique<RecordingDevice>(m_scheduler.get());
        for (const auto& deed : qAsConst(deeds)) {
            deed(*m_device);
        }
        QCOMPARE(m_device->state(), state);
        QCOMPARE(m_device->isConnected(), m_device->state() == State::Connected);
        QCOMPARE(m_device->connectionProblem().english(), problem);
        send(1, "getValue"_s);
        QCOMPARE(m_device->requests.size(), failure.isEmpty() ? 1 : 0);
        send(2, "getValue"_s);
        m_device->cancel(2);
        QCOMPARE(m_device->cancelled.size(), failure.isEmpty() ? 1 : 0);
        QVERIFY(m_client->heard.isEmpty());
        m_device->reply(1, {{"value"_s, 1}});
        deliver();
        QCOMPARE(m_client->ids(), QVector<quint64>{1});
        QCOMPARE(m_client->heard.constFirst().failure.text.english(), failure);
        QCOMPARE(m_client->heard.constFirst().failure.kind,
                 failure.isEmpty() ? DFailure::Kind::None : DFailure::Kind::DeviceUnreachable);
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void aDeviceIsReachedForOnceUntilItIsClosed()
    {
        QSignalSpy changed(m_device.get(), &DDevice::stateChanged);
        m_device->open();
        m_device->lose("cable pulled"_s);
        m_device->open();
        QCOMPARE(m_device->reached, QStringList{"open"_s});
        m_device->close();
        m_device->close();
        QCOMPARE(m_device->reached, (QStringList{"open"_s, "close"_s}));
        QCOMPARE(changed.count(), 2);
    }

    void closingFailsWhatIsPending()
    {
        send(1, "listenEvents"_s);
        send(2, "getValue"_s);
        m_device->reply(2, {{"value"_s, 1}});
        m_device->close();
        QVERIFY(m_client->heard.isEmpty());
        QCOMPARE(m_device->cancelled, (QVector<quint64>{1, 2}));
        m_device->open();
        deliver();
        QCOMPARE(m_client->ids(), (QVector<quint64>{2, 1}));
        QCOMPARE(m_client->failures(), QStringList{"the device was closed"_s});
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void theStateIsToldWhenItOrItsReasonChanges()
    {
        QSignalSpy changed(m_device.get(), &DDevice::stateChanged);
        m_device->restore();
        QCOMPARE(changed.count(), 0);
        for (const char* problem : {"cable pulled", "cable pulled", "board burnt"}) {
            m_device->lose(QString::fromLatin1(problem));
        }
        QCOMPARE(changed.count(), 2);
        m_device->restore();
        QCOMPARE(changed.count(), 3);
    }

    void aReplyKeepsTheTimeThatTheDeviceGaveIt()
    {
        send(1, "listenEvents"_s);
        m_device->reply(1, {}, 0);
        m_device->reply(1, {}, 123456789);
        m_scheduler->advance(500);
        deliver();
        QCOMPARE(m_client->heard.at(0).timeUs, qint64{0});
        QCOMPARE(m_client->heard.at(1).timeUs, qint64{123456789});
    }

    void aDeviceThatGoesFailsWhatIsPending()
    {
        send(1, "getValue"_s);
        send(2, "listenEvents"_s);
        m_device->reply(1, {}); // under way, and dropped
        m_device.reset();
        deliver();
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2}));
        QCOMPARE(m_client->failures(), (QStringList{"the device is gone"_s, "the device is gone"_s}));
    }

    void aClientMayCancelItsOtherRequestsWhileTheDeviceGoes()
    {
        send(1, "getValue"_s);
        send(2, "getValue"_s);
        auto* device = m_device.release();
        m_client->then = [device](const RecordingClient::Heard& what) { device->cancel(3 - what.id); };
        delete device;
        QCOMPARE(m_client->heard.size(), 1);
        QVERIFY(m_client->heard.constFirst().failure);
    }

    void whatIsSentWhileTheDeviceGoesFailsToo()
    {
        send(1, "listenEvents"_s);
        auto* device = m_device.release();
        m_client->then = [this, device](const RecordingClient::Heard& what) {
            if (what.id == 1) {
                device->send(2, "listenEvents"_s, {}, 10, m_client.get());
            }
        };
        delete device;
        advanceMs(10);
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2}));
    }
};

QTEST_GUILESS_MAIN(TestDevice)
#include "test_device.moc"
