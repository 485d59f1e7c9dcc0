#pragma once

#include <configuration/bench.h>

#include <plugin_management/d_order.h>

#include <QJsonArray>
#include <QJsonObject>

Q_DECLARE_METATYPE(DevicePlace)

/// What became of an order.
struct Outcome
{
    bool success = false;
    DFailure failure;
    QVariantMap results;
};

/// The entry of a line in the configuration.
QJsonObject input(const QString& name, const QString& chip, const QJsonValue& line,
                  const QJsonObject& more = QJsonObject());
QJsonObject output(const QString& name, const QString& chip, const QJsonValue& line,
                   const QJsonObject& more = QJsonObject());

/// The text of a configuration of these lines; each has a channel of its name.
QByteArray configurationOf(const QVector<QJsonObject>& lines);

/// A bench of GPIO lines with the plugin, opened; each line has a channel of its name.
class LineBench
{
public:
    explicit LineBench(const QVector<QJsonObject>& lines, DevicePlace place = DevicePlace::SameThread);

    LineDevice& device() { return m_bench->device(); }
    DTool* tool() { return m_bench->tools().front().get(); }

    /// Runs an order to its end.
    Outcome run(const QString& command, const QVariantMap& arguments);
    Outcome get(const QString& channel);
    Outcome set(const QString& channel, const QString& state, int duration = 0, int dutyCycle = 0);

private:
    std::unique_ptr<Bench> m_bench;
};

/// An order that listens; it keeps what it reported.
class Listening
{
public:
    Listening(LineBench* bench, const QString& command, const QVariantMap& arguments);

    DOrder& order() { return m_order; }
    const QVector<QVariantMap>& events() const { return m_events; }
    /// The "value" of the last event.
    QVariant lastValue() const;
    bool isOver() const { return m_over; }

private:
    QVector<QVariantMap> m_events;
    bool m_over = false;
    DOrder m_order;
};
