#pragma once

#include <plugin_management/fast_delegate.h>
#include <plugin_management/i_command.h>

#include <QSharedPointer>
#include <QString>
#include <QVariant>

/// What the commands share: the terms of their dialogue with the device, and their factory.
namespace command_support {

/// Who receives the reply to a device request.
using ReplyDelegate = fastdelegate::FastDelegate2<quint64, const QVariantMap&, bool>;

/// How long the device may take to answer a request, in milliseconds.
constexpr int c_replyTimeoutMs = 4000;

constexpr auto c_channelNotManaged = "ERROR: Channel not managed";
constexpr auto c_notAnOutput = "ERROR: Trying to write on an non output io";
constexpr auto c_invalidReplyFormat = "ERROR: Invalid reply format";
constexpr auto c_replyWithoutValues = "ERROR: reply does not contain values";

/// The target of every device request.
inline QString deviceTarget()
{
    return QStringLiteral("device");
}

/// The default of a text parameter that may be left out: a text that is empty, not null.
inline QVariant emptyText()
{
    return QVariant(QLatin1String(""));
}

/// True when direction, an item of a channel's configuration, marks the channel as one to write to.
inline bool isOutput(const QVariant& direction)
{
    return direction.toString() == QLatin1String("out");
}

/// The arguments of the device request "setValues" that writes value and nothing more.
inline QVariantMap valueArguments(const QString& deviceChannel, quint16 value)
{
    return {{QStringLiteral("channel"), deviceChannel}, {QStringLiteral("values"), static_cast<int>(value)}};
}

/// Makes a working instance of Command that its shared pointer owns.
template <typename Command>
QSharedPointer<ICommand> workingInstance(const QVariantMap& parameters, QObject* parent)
{
    return QSharedPointer<Command>(new Command(parameters, parent));
}

} // namespace command_support
