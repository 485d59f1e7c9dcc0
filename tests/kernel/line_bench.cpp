#include "line_bench.h"
#include "literals.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonDocument>
#include <QTemporaryFile>

#include <stdexcept>

namespace {

QJsonObject line(const QString& name, const QString& chip, const QJsonValue& line, const char* direction,
                 const QJsonObject& more)
{
    QJsonObject entry = more;
    entry["name"_s] = name;
    if (!chip.isEmpty()) {
        entry["chip"_s] = chip;
    }
    entry["line"_s] = line;
    entry["direction"_s] = QLatin1String(direction);
    return entry;
}

QJsonObject item(const char* id, const QJsonValue& value)
{
    return {{"id"_s, QLatin1String(id)}, {"value"_s, value}};
}

QJsonObject channelOf(const QJsonObject& line)
{
    const QJsonValue direction = line.value("direction"_s);
    const bool driven = direction.toString() == QLatin1String("out");
    const QJsonValue name = line.value("name"_s);
    return {{"id"_s, name},
            {"visibility"_s, "public"_s},
            {"value"_s, QJsonArray{item("type", driven ? "digitalInput"_s : "digitalOutput"_s),
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
    const QJsonObject device = {{"type"_s, "gpiochip"_s}, {"lines"_s, entries}};
    const QJsonObject tool = {{"name"_s, "Lines"_s},
                              {"id"_s, "{4b7a1c6e-0d52-4f3b-9a51-6f0c2f9d7a10}"_s},
                              {"plugin"_s, QStringLiteral(PLUGIN_FILE)},
                              {"channels"_s, channels}};
    return QJsonDocument(QJsonObject{{"device"_s, device}, {"tools"_s, QJsonArray{tool}}}).toJson();
}

LineBench::LineBench(const QVector<QJsonObject>& lines, DevicePlace place)
{
    QTemporaryFile file;
    file.open();
    file.write(configurationOf(lines));
    file.close();
    QVector<Problem> problems;
    const std::optional<BenchConfiguration> configuration = readConfiguration(file.fileName(), &problems);
    DWording problem = problems.value(0).text;
    m_bench = configuration ? Bench::make(*configuration, place, &problem) : nullptr;
    if (m_bench == nullptr) {
        throw std::runtime_error(problem.english().toStdString());
    }
    QEventLoop loop;
    QObject::connect(&device(), &DDevice::stateChanged, &loop, [this, &loop] {
        if (device().state() != DDevice::State::Connecting) {
            loop.quit();
        }
    });
    device().open();
    if (device().state() == DDevice::State::Connecting) {
        loop.exec();
    }
}

Outcome LineBench::run(const QString& command, const QVariantMap& arguments)
{
    QEventLoop loop;
    DOrder order(tool(), command, arguments);
    QObject::connect(&order, &DOrder::finished, &loop, &QEventLoop::quit);
    order.start();
    QCoreApplication::sendPostedEvents(&device()); // its answer is there already
    if (order.state() != DOrder::State::Finished) {
        loop.exec();
    }
    return {order.isSuccessful(), order.failure(), order.results()};
}

Outcome LineBench::get(const QString& channel)
{
    return run("getValue"_s, {{"channel"_s, channel}});
}

Outcome LineBench::set(const QString& channel, const QString& state, int duration, int dutyCycle)
{
    return run(
        "setValue"_s,
        {{"channel"_s, channel}, {"state"_s, state}, {"duration"_s, duration}, {"dutyCycle"_s, dutyCycle}});
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
    return m_events.isEmpty() ? QVariant() : m_events.last().value("value"_s);
}
