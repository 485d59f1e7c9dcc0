#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// What somebody asks of a rig, in a message to its topic "order".
struct RigOrder
{
    enum class Kind
    {
        Command,     ///< of a tool
        Instruction, ///< of the device itself: "getValue", "setValues" or "setBlink"
        Lease,
        Release
    };

    Kind kind = Kind::Command;
    QString name; ///< of the command or instruction
    QVariantMap arguments;
    QString tool;   ///< empty for the first one
    QString holder; ///< who asks, as leases know them
    double minutes = 0;
    int size = 0; ///< of its text, in bytes
};

/// Reads an order. Returns nothing, and in problem each mistake, for what is none.
std::optional<RigOrder> readRigOrder(const QByteArray& payload, QString* problem);
