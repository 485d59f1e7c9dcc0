#include "broker.h"

#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <csignal>

namespace {

QString folder()
{
    static const QTemporaryDir scratch;
    return scratch.path();
}

int freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

QString otherBroker()
{
    return qEnvironmentVariable("FLEET_BROKER");
}

bool answers(int port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(port));
    return socket.waitForConnected(1000);
}

} // namespace

Broker::Broker(const QByteArray& configuration)
    : m_port(freePort())
    , m_file("broker%1.conf"_s.arg(m_port))
{
    QByteArray text = "listener " + QByteArray::number(m_port) +
                      " 127.0.0.1\nmax_queued_messages 0\nuser root\n" + configuration;
    add(m_file, text.replace("$DIR", folder().toUtf8()));
    if (!otherBroker().isEmpty()) {
        comeAs("ada@localhost"_s);
        qputenv("APPVANTOR_USER", "rig@localhost");
        qputenv("APPVANTOR_PASSWORD", "rig");
    }
    start();
}

Broker::~Broker()
{
    kill();
}

void Broker::add(const QString& name, const QByteArray& text)
{
    QFile target(file(name));
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write(text);
}

QString Broker::file(const QString& name)
{
    return folder() + QLatin1Char('/') + name;
}

void Broker::start()
{
    constexpr int patienceMs = 60000;
    if (otherBroker().isEmpty()) {
        m_process.start(QStringLiteral(MOSQUITTO), {"-c"_s, file(m_file)});
    } else {
        m_process.start(otherBroker(), {QString::number(m_port), folder()});
    }
    QTRY_VERIFY2_WITH_TIMEOUT(answers(m_port), m_process.readAllStandardError(), patienceMs);
}

void Broker::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

void Broker::send(int signal)
{
    ::kill(static_cast<pid_t>(m_process.processId()), signal);
}

QString Broker::url(const QString& rig) const
{
    return "mqtt://127.0.0.1:%1/%2"_s.arg(m_port).arg(rig);
}

ServedBench::ServedBench(const Broker& broker, const QStringList& options)
    : BenchProcess(QStringList{"serve"_s, "--broker"_s, broker.url()} + options)
{
    QVERIFY(waitForOutput("serving bench-7"));
}

BenchRun ServedBench::leave()
{
    send(SIGTERM);
    return end();
}
