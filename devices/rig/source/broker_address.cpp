#include <devices/broker_address.h>

#include <QFile>
#include <QUrl>

QString BrokerAddress::text() const
{
    const QString scheme = encrypted ? QStringLiteral("mqtts") : QStringLiteral("mqtt");
    const QString name = host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]").arg(host) : host;
    return QStringLiteral("%1://%2:%3").arg(scheme, name).arg(port);
}

std::optional<BrokerAddress> readBrokerAddress(const QString& text, DWording* problem)
{
    constexpr int plainPort = 1883;
    constexpr int encryptedPort = 8883;
    const QUrl url(text, QUrl::StrictMode);
    const bool encrypted = url.scheme() == QLatin1String("mqtts");
    if (!url.isValid() || (!encrypted && url.scheme() != QLatin1String("mqtt")) || url.host().isEmpty() ||
        url.hasQuery() || url.hasFragment() || url.port() == 0) {
        *problem = wording(R"(expected mqtt://HOST[:PORT]/[RIG] or mqtts://…, found "%1")").arg(text);
        return std::nullopt;
    }
    if (!url.userInfo().isEmpty()) {
        *problem = wording("expected no user in a broker's address: user and password come from a file "
                           "or from the environment");
        return std::nullopt;
    }
    const QString path = url.path(QUrl::FullyEncoded).mid(1);
    const QString rig = QUrl::fromPercentEncoding(path.toLatin1());
    if (path.contains(QLatin1Char('/'))) {
        *problem = wording(R"(expected one name of a rig behind the broker, found "%1")").arg(path);
        return std::nullopt;
    }
    return BrokerAddress{url.host(), url.port(encrypted ? encryptedPort : plainPort), encrypted, rig};
}

DWording unreadableFile(const BrokerAccess& access)
{
    for (const QString& name : {access.authorities, access.certificate, access.key}) {
        QFile file(name);
        if (!name.isEmpty() && !file.open(QIODevice::ReadOnly)) {
            return wording("%1 cannot be read: %2").arg(name, DWording::told(file.errorString()));
        }
    }
    return {};
}

DWording readLogin(const QString& file, BrokerAccess* access)
{
    constexpr int longest = 4096;
    if (file.isEmpty()) {
        access->user = qEnvironmentVariable("APPVANTOR_USER");
        access->password = qgetenv("APPVANTOR_PASSWORD");
        return {};
    }
    QFile login(file);
    if (!login.open(QIODevice::ReadOnly)) {
        return wording("%1 cannot be read: %2").arg(file, DWording::told(login.errorString()));
    }
    QByteArray line = login.readLine(longest);
    while (line.endsWith('\n') || line.endsWith('\r')) {
        line.chop(1);
    }
    const int colon = line.indexOf(':');
    if (colon < 1) {
        return wording("%1: expected USER:PASSWORD in the first line").arg(file);
    }
    access->user = QString::fromUtf8(line.left(colon));
    access->password = line.mid(colon + 1);
    return {};
}
