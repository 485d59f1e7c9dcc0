#pragma once

#include "literals.h"
#include "scripted_command.h"

/// What a command does that sends these instructions.
inline auto sends(const QStringList& instructions)
{
    return [instructions](ScriptedCommand& command) {
        for (const QString& instruction : instructions) {
            command.send(instruction, {{"channel"_s, "line0"_s}});
        }
        return true;
    };
}

/// Makes a command that reads the device once and reports the "value" of the reply.
inline void fillReader(CommandScript& script)
{
    script.results = {{"value"_s, "ui16"_s, "Value"_s, QVariant()}};
    script.execute = sends({"getValue"_s});
    script.onReply = [](ScriptedCommand& command, quint64, const QVariantMap& reply) {
        return reply.contains("value"_s) && command.commandUpdateResult("value"_s, reply.value("value"_s));
    };
}

/// Makes a command that listens to the device and reports the "value" of each reply.
inline void fillListener(CommandScript& script)
{
    fillReader(script);
    script.stopName = "rest"_s;
    script.execute = sends({"listenEvents"_s});
}

/// Passes a reply on as the command's whole result.
inline bool takeWhole(ScriptedCommand& command, quint64, const QVariantMap& reply)
{
    command.commandSetReply(reply);
    return !command.commandName().isEmpty(); // it lives on, whatever who heard it did
}
