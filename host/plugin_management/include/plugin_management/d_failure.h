#pragma once

#include <plugin_management/d_wording.h>
#include <plugin_management/plugin_management_global.h>

#include <QMetaType>
#include <QString>

/// Why something did not happen: programs act on the kind, people read the text.
struct PLUGIN_MANAGEMENT_EXPORT DFailure
{
    enum class Kind
    {
        None,              ///< nothing has failed
        WrongInvocation,   ///< unknown command or parameter, or a value that its type cannot hold
        RefusedByCommand,  ///< the command would not run, or ended itself as failed
        NothingSent,       ///< the command can bring no result: it sent no request, or waits for nothing
        ReplyRejected,     ///< the command did not accept the device's reply
        RefusedByDevice,   ///< the device would not carry out the request
        DeviceUnreachable, ///< there is no device, or it is lost
        TimedOut,          ///< the device did not answer in time
        Stopped,           ///< the order was stopped before it was complete
        ToolClosed,        ///< the tool went while the order ran
        Count
    };

    Kind kind = Kind::None;
    DWording text;

    explicit operator bool() const { return kind != Kind::None; }
    /// Name of the kind for other programs, "deviceUnreachable" for example; empty for None.
    QString kindName() const;
};

Q_DECLARE_METATYPE(DFailure)
