#pragma once

#include <QDebug>
#include <QObject>

/// Composes the identification of object for the lifecycle trace: its name, its address, and the further
/// items. The output of the trace is disabled: nothing reaches the log.
template <typename... Items>
void traceLifecycle(const QObject& object, const Items&... items)
{
    const auto address = static_cast<quint64>(reinterpret_cast<quintptr>(&object));
    const QByteArray pointer = QStringLiteral("0x%1").arg(address, 8, 16, QLatin1Char('0')).toUtf8();
    ((QNoDebug() << object.objectName() << pointer) << ... << items);
}
