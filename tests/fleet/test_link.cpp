#include "literals.h"

#include <devices/broker_link.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

/// A link to a broker, by itself.
class TestLink : public QObject
{
    Q_OBJECT

    static constexpr int c_patienceMs = 20000;

private Q_SLOTS:
    void itsQueueCountsAllOfAMessage()
    {
        constexpr int long64KiB = 64 << 10;
        BrokerLink link({"127.0.0.1"_s, 1, false, {}}, {}, "x");
        int queued = 0;
        while (queued < 1000 && link.publish({"t", {}, false, {}, QByteArray(long64KiB, 'c')})) {
            ++queued;
        }
        QVERIFY(queued < BrokerLink::c_bound / long64KiB);
    }

    void reachesForNothingOnceItHasLeft()
    {
        QTcpServer broker;
        QVERIFY(broker.listen(QHostAddress::LocalHost));
        const BrokerAddress address{"localhost"_s, broker.serverPort(), false, {}};
        BrokerLink left(address, {}, "the-one-that-left");
        left.open();
        QCoreApplication::processEvents(); // the look-up of its host begins
        left.leave();
        BrokerLink stays(address, {}, "the-one-that-stays");
        stays.open();
        QByteArray heard;
        connect(&broker, &QTcpServer::newConnection, &broker, [&] {
            QTcpSocket* socket = broker.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [&heard, socket] { heard += socket->readAll(); });
        });
        QTRY_VERIFY_WITH_TIMEOUT(heard.contains("the-one-that-stays"), c_patienceMs);
        QVERIFY(!heard.contains("the-one-that-left"));
    }
};

QTEST_GUILESS_MAIN(TestLink)
#include "test_link.moc"
