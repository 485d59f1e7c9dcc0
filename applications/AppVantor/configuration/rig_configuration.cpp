#include "rig_configuration.h"

#include <QDir>
#include <QSet>

namespace {

QString readFileName(const ConfigObject& device, const QString& key, const QString& folder)
{
    const QString name = device.textOr(key, QString());
    return name.isEmpty() ? name : QDir::cleanPath(QDir(folder).absoluteFilePath(name));
}

RigDeviceSetup::Line readRigLine(const ConfigObject& entry)
{
    const QString line = QStringLiteral("line");
    entry.allowOnly({QStringLiteral("name"), line, QStringLiteral("kind"), QStringLiteral("direction")});
    RigDeviceSetup::Line read;
    read.line.name = entry.text(QStringLiteral("name"));
    read.there = entry.textOr(line, read.line.name);
    read.line.kind = static_cast<DLine::Kind>(
        entry.choiceOr(QStringLiteral("kind"), {QStringLiteral("digital"), QStringLiteral("analog")}, 0));
    read.line.direction = static_cast<DLine::Direction>(
        entry.choiceOr(QStringLiteral("direction"), {QStringLiteral("in"), QStringLiteral("out")}, 1));
    return read;
}

void readBroker(const ConfigObject& device, const QString& folder, RigDeviceSetup* setup)
{
    const QString broker = QStringLiteral("broker");
    const QString rig = QStringLiteral("rig");
    const QString login = QStringLiteral("login");
    const QString url = device.text(broker);
    const QString name = device.textOr(rig, QString());
    DWording problem;
    const std::optional<BrokerAddress> address =
        url.isEmpty() ? std::nullopt : readBrokerAddress(url, &problem);
    if (!problem.isEmpty()) {
        device.addProblem(broker, problem);
    }
    if (address) {
        setup->broker = *address;
        setup->broker.rig = name.isEmpty() ? address->rig : name;
        if (setup->broker.rig.isEmpty()) {
            device.addProblem(rig, wording("expected the name of a rig"));
        }
    }
    setup->access.authorities = readFileName(device, QStringLiteral("ca"), folder);
    setup->access.certificate = readFileName(device, QStringLiteral("cert"), folder);
    setup->access.key = readFileName(device, QStringLiteral("key"), folder);
    problem = readLogin(readFileName(device, login, folder), &setup->access);
    if (!problem.isEmpty()) {
        device.addProblem(login, problem);
    }
}

} // namespace

RigDeviceSetup readRigLines(const ConfigObject& device, const QString& folder)
{
    device.allowOnly({QStringLiteral("type"), QStringLiteral("broker"), QStringLiteral("rig"),
                      QStringLiteral("login"), QStringLiteral("ca"), QStringLiteral("cert"),
                      QStringLiteral("key"), QStringLiteral("lines")});
    RigDeviceSetup setup;
    readBroker(device, folder, &setup);
    QSet<QString> names;
    QSet<QString> linesThere;
    for (const ConfigObject& entry : device.objects(QStringLiteral("lines"))) {
        const RigDeviceSetup::Line line = readRigLine(entry);
        if (!line.line.name.isEmpty() && names.contains(line.line.name)) {
            entry.addProblem(QStringLiteral("name"),
                             wording(R"(expected a name of its own, "%1" is taken)").arg(line.line.name));
        } else if (!line.there.isEmpty() && linesThere.contains(line.there)) {
            entry.addProblem(QStringLiteral("line"),
                             wording(R"(expected a line of its own, "%1" is taken)").arg(line.there));
        }
        names.insert(line.line.name);
        linesThere.insert(line.there);
        setup.lines.append(line);
    }
    if (setup.lines.isEmpty()) {
        device.addProblem(QStringLiteral("lines"), wording("expected at least one line"));
    }
    return setup;
}
