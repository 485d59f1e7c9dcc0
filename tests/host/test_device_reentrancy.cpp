#include "device_fixture.h"

#include <QtTest>

class TestDeviceReentrancy : public DeviceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aClientMayCancelTheRequestThatItHearsOfAndTheNext()
    {
        listen(1);
        listen(2);
        m_client->then = [this](const auto&) {
            m_device->cancel(1);
            m_device->cancel(2);
        };
        for (const quint64 id : {1U, 1U, 2U}) {
            m_device->reply(id, {});
        }
        deliver();
        QCOMPARE(m_client->ids(), QVector<quint64>{1});
        QCOMPARE(m_device->cancelled, (QVector<quint64>{1, 2}));
    }

    void aRequestSentFromAReplyIsAnsweredLater()
    {
        listen(1);
        bool inside = false;
        m_client->then = [&](const auto& what) {
            QVERIFY(!inside);
            inside = true;
            if (what.id == 1) {
                m_device->onRequest = [this](const auto& request) { m_device->reply(request.id, {}); };
                listen(2);
            }
            inside = false;
        };
        m_device->reply(1, {});
        deliver();
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2}));
    }

    void aClientMayDestroyTheDeviceFromAReply()
    {
        listen(1);
        listen(2);
        m_client->then = [this](const auto&) { m_device.reset(); };
        m_device->reply(1, {});
        m_device->reply(2, {});
        deliver();
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 1, 2}));
        QCOMPARE(m_client->failures().size(), 2);
    }

    void aClientMayDestroyTheDeviceFromAFailure()
    {
        listen(1);
        m_client->then = [this](const auto&) { m_device.reset(); };
        m_device->refuse(1, "broken"_s);
        deliver();
        QCOMPARE(m_client->failures(), QStringList{"broken"_s});
    }

    void aClientMayDestroyTheDeviceWhenATimeHasPassed()
    {
        send(1, "getValue"_s, {}, 1);
        send(2, "getValue"_s, {}, 1);
        m_client->then = [this](const auto&) { m_device.reset(); };
        advanceMs(1);
        QCOMPARE(m_client->heard.size(), 2);
        QCOMPARE(m_client->failures().constLast(), "the device is gone"_s);
    }

    void aClientMayGoAfterCancellingItsRequests()
    {
        listen(1);
        m_device->reply(1, {});
        m_device->cancel(1);
        m_client.reset();
        deliver();
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void aClientMayGoInsideTheOnlyReplyOfItsRequest()
    {
        auto* client = new RecordingClient;
        bool gone = false;
        client->then = [client, &gone](const auto&) {
            delete client;
            gone = true;
        };
        m_device->send(1, "getValue"_s, {}, 0, client);
        m_device->reply(1, {});
        m_device->reply(1, {});
        deliver();
        QVERIFY(gone);
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void repliesAreDeliveredInTheirOrderInsideANestedEventLoop()
    {
        listen(1);
        bool nested = false;
        m_client->then = [&](const auto&) {
            if (!nested) {
                nested = true;
                answer(1, 3);
                deliver();
                QCOMPARE(m_client->replied("value"_s), (QVariantList{1, 2, 3}));
            }
        };
        answer(1, 1);
        answer(1, 2);
        deliver();
        QCOMPARE(m_client->replied("value"_s), (QVariantList{1, 2, 3}));
    }

    void deadlinesPassInsideANestedEventLoop()
    {
        send(1, "getValue"_s, {}, 1);
        send(2, "getValue"_s, {}, 20);
        bool heardInside = false;
        m_client->then = [&](const auto& what) {
            if (what.id == 1) {
                advanceMs(20);
                heardInside = m_client->heard.size() == 2;
            }
        };
        advanceMs(1);
        QCOMPARE(m_client->heard.size(), 2);
        QVERIFY(heardInside);
    }

    void theDeviceMayGoInsideANestedEventLoop()
    {
        listen(1);
        m_client->then = [this](const auto& what) {
            if (!what.failure) {
                QEventLoop loop;
                QTimer::singleShot(0, &loop, [&] {
                    m_device.reset();
                    loop.quit();
                });
                loop.exec();
            }
        };
        answer(1, 1);
        answer(1, 2);
        answer(1, 3);
        deliver();
        QCOMPARE(m_client->failures(), QStringList{"the device is gone"_s});
    }

    void noAnswerIsDeliveredWhileTheDeviceGoes()
    {
        listen(1);
        listen(2);
        answer(2, 1);
        m_client->then = [](const auto&) { deliver(); };
        m_device.reset();
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2}));
        QCOMPARE(m_client->failures().size(), 2);
    }

    void aRequestMayBeCancelledWhereTheLossOfAnotherIsHandled()
    {
        listen(1);
        listen(2);
        m_device->onCancel = [this](quint64 id) { m_device->cancel(3 - id); };
        m_device->lose("cable pulled"_s);
        QCOMPARE(m_device->cancelled, (QVector<quint64>{1, 2}));
        QCOMPARE(m_device->pendingRequests(), 0);
        deliver();
        QCOMPARE(m_client->ids(), QVector<quint64>{});
    }

    void aRequestMayBeCancelledWhereTheEndOfItsTimeIsHandled()
    {
        send(1, "getValue"_s, {}, 1);
        m_device->onCancel = [this](quint64 id) {
            m_device->cancel(id);
            m_client.reset();
        };
        advanceMs(1);
        QCOMPARE(m_device->cancelled, QVector<quint64>{1});
        QCOMPARE(m_device->pendingRequests(), 0);
    }

    void theLossOfTheDeviceMayBeUndoneWhereItIsHeard()
    {
        connect(m_device.get(), &DDevice::stateChanged, this, [this] {
            if (!m_device->isConnected()) {
                m_device->restore();
                send(2, "getValue"_s);
            }
        });
        listen(1);
        m_device->lose("cable pulled"_s);
        m_device->reply(2, {});
        deliver();
        QCOMPARE(m_client->ids(), (QVector<quint64>{1, 2}));
        QCOMPARE(m_client->failures(), QStringList{"cable pulled"_s});
        QVERIFY(m_device->isConnected());
    }

private:
    void listen(quint64 id) { send(id, "listenEvents"_s); }
    void answer(quint64 id, int value) { m_device->reply(id, {{"value"_s, value}}); }
};

QTEST_GUILESS_MAIN(TestDeviceReentrancy)
#include "test_device_reentrancy.moc"
