#include "line_bench.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QTemporaryFile>
#include <QTimer>

#include <stdexcept>

namespace {

QJsonObject line(const QString& name, const QString& chip, const QJsonValue& line, const char* direction,
                 const QJsonObject& more)
{
    QJsonObject entry = more;
    entry[QStringLiteral("name")] = name;
    entry[QStringLiteral("chip")] = chip;
    entry[QStringLiteral("line")] = line;
    entry[QStringLiteral("direction")] = QLatin1String(direction);
    return entry;
}

QJsonObject item(const char* id, const QJsonValue& value)
{
    return {{QStringLiteral("id"), QLatin1String(id)}, {QStringLiteral("value"), value}};
}

QJsonObject channelOf(const QJsonObject& line)
{
    const QJsonValue direction = line.value(QStringLiteral("direction"));
    const bool driven = direction.toString() == QLatin1String("out");
    const QJsonValue name = line.value(QStringLiteral("name"));
    return {{QStringLiteral("id"), name},
            {QStringLiteral("visibility"), QStringLiteral("public")},
            {QStringLiteral("value"), QJsonArray{item("type", driven ? QStringLiteral("digitalInput")
                                                                     : QStringLiteral("digitalOutput")),
                                                 item("direction", direction), item("link", name)}}};
}

} // namespace

QJsonObject input(const QString& name, const QString& chip, const QJsonValue& offset, const QJsonObject& more)
{
    return line(name, chip, offset, "in", more);
}

QJsonObject output(const QString& name, const QString& chip, const QJsonValue& offset,
                   const QJsonObject& more)
{
    return line(name, chip, offset, "out", more);
}

QByteArray configurationOf(const QVector<QJsonObject>& lines)
{
    QJsonArray entries;
    QJsonArray channels;
    for (const QJsonObject& entry : lines) {
        entries.append(entry);
        channels.append(channelOf(entry));
    }
    const QJsonObject device = {{QStringLiteral("type"), QStringLiteral("gpiochip")},
                                {QStringLiteral("lines"), entries}};
    const QJsonObject tool = {
        {QStringLiteral("name"), QStringLiteral("Lines")},
        {QStringLiteral("id"), QStringLiteral("{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}")},
        {QStringLiteral("plugin"), QStringLiteral(PLUGIN_FILE)},
        {QStringLiteral("channels"), channels}};
    return QJsonDocument(
               QJsonObject{{QStringLiteral("device"), device}, {QStringLiteral("tools"), QJsonArray{tool}}})
        .toJson();
}

LineBench::LineBench(const QVector<QJsonObject>& lines)
{
    QTemporaryFile file;
    file.open();
    file.write(configurationOf(lines));
    file.close();
    QString problem;
    const std::optional<BenchConfiguration> configuration = readConfiguration(file.fileName(), &problem);
    m_bench = configuration ? Bench::make(*configuration, &problem) : nullptr;
    if (m_bench == nullptr) {
        throw std::runtime_error(problem.toStdString());
    }
}

Outcome LineBench::run(const QString& command, const QVariantMap& arguments)
{
    Outcome outcome;
    QEventLoop loop;
    DOrder order(tool(), command, arguments);
    bool over = false;
    QObject::connect(&order, &DOrder::finished, &loop, [&](bool success, const QString& reason) {
        outcome.success = success;
        outcome.reason = reason;
        over = true;
        loop.quit();
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    order.start();
    if (!over) {
        loop.exec();
    }
    outcome.results = order.results();
    return outcome;
}

Outcome LineBench::get(const QString& channel)
{
    return run(QStringLiteral("getValue"), {{QStringLiteral("channel"), channel}});
}

Outcome LineBench::set(const QString& channel, const QString& state, int duration, int dutyCycle)
{
    return run(QStringLiteral("setValue"), {{QStringLiteral("channel"), channel},
                                            {QStringLiteral("state"), state},
                                            {QStringLiteral("duration"), duration},
                                            {QStringLiteral("dutyCycle"), dutyCycle}});
}

Listening::Listening(LineBench* bench, const QString& command, const QVariantMap& arguments)
    : m_order(bench->tool(), command, arguments)
{
    QObject::connect(&m_order, &DOrder::eventReceived, &m_order,
                     [this](const QVariantMap& event) { m_events.append(event); });
    QObject::connect(&m_order, &DOrder::finished, &m_order, [this] { m_over = true; });
    m_order.start();
}

QVariant Listening::lastValue() const
{
    return m_events.isEmpty() ? QVariant() : m_events.last().value(QStringLiteral("value"));
}
