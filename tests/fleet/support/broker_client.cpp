#include "broker_client.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTest>

namespace {

constexpr int c_patienceMs = 20000;

QStringList at(const Broker& broker)
{
    const QStringList login =
        broker.user().isEmpty() ? QStringList() : QStringList{"-u"_s, broker.user(), "-P"_s, broker.user()};
    return QStringList{"-V"_s, "5"_s, "-h"_s, "127.0.0.1"_s, "-p"_s, QString::number(broker.port())} + login;
}

} // namespace

Reader::Reader(const Broker& broker, const QString& pattern, const QStringList& options)
{
    // A retained message of its own shows that the subscriptions stand.
    publish(broker, "hello"_s, "there", {"-r"_s});
    m_process.start("mosquitto_sub"_s,
                    at(broker) + QStringList{"-v"_s, "-q"_s, "1"_s, "-t"_s, pattern, "-t"_s, "hello"_s} +
                        options);
    QVERIFY(!waitFor("hello").isEmpty());
}

Reader::~Reader()
{
    m_process.kill();
    m_process.waitForFinished();
}

void Reader::readMore(int timeoutMs)
{
    m_process.waitForReadyRead(timeoutMs);
    m_rest += m_process.readAllStandardOutput();
    for (int end = m_rest.indexOf('\n'); end >= 0; end = m_rest.indexOf('\n')) {
        const QByteArray line = m_rest.left(end);
        m_rest.remove(0, end + 1);
        const int blank = line.indexOf(' ');
        m_messages.append({line.left(blank), line.mid(blank + 1)});
    }
}

QByteArray Reader::waitFor(const QByteArray& topic, const QByteArray& text)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < c_patienceMs) {
        for (const auto& [heard, payload] : qAsConst(m_messages)) {
            if (heard == topic && payload.contains(text)) {
                return payload;
            }
        }
        readMore(100);
    }
    return QByteArray();
}

QVector<QByteArray> Reader::messages(const QByteArray& topic)
{
    readMore(100);
    QVector<QByteArray> found;
    for (const auto& [heard, payload] : m_messages) {
        if (heard == topic) {
            found.append(payload);
        }
    }
    return found;
}

void publish(const Broker& broker, const QString& topic, const QByteArray& payload,
             const QStringList& options)
{
    const bool byLine = options.contains("-l"_s);
    QProcess client;
    client.start("mosquitto_pub"_s, at(broker) + QStringList{"-q"_s, "1"_s, "-t"_s, topic} + options +
                                        (byLine ? QStringList() : QStringList{"-s"_s}));
    client.write(payload);
    client.closeWriteChannel();
    QVERIFY(client.state() == QProcess::NotRunning || client.waitForFinished(c_patienceMs));
}

QByteArray ask(const Broker& broker, const QString& topic, const QByteArray& payload, const QString& answerTo)
{
    QProcess client;
    client.start("mosquitto_rr"_s,
                 at(broker) + QStringList{"-q"_s, "1"_s, "-W"_s, "2"_s, "-t"_s, topic, "-e"_s, answerTo,
                                          "-m"_s, QString::fromUtf8(payload)});
    client.waitForFinished(c_patienceMs);
    return client.readAllStandardOutput().trimmed();
}

QJsonObject objectOf(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).object();
}
