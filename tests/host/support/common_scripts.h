#pragma once

#include "literals.h"
#include "scripted_command.h"

/// Makes a command that reads the device once and reports the "value" of the reply.
inline void fillReader(CommandScript& script)
{
    script.results = {{"value"_s, "ui16"_s, "Value"_s, QVariant()}};
    script.execute = [](ScriptedCommand& command) {
        command.send("getValue"_s, {{"channel"_s, "line0"_s}});
        return true;
    };
    script.onReply = [](ScriptedCommand& command, quint64, const QVariantMap& reply) {
        return reply.contains("value"_s) && command.commandUpdateResult("value"_s, reply.value("value"_s));
    };
}

/// Makes a command that listens to the device and reports the "value" of each reply.
inline void fillListener(CommandScript& script)
{
    fillReader(script);
    script.stopName = "rest"_s;
    script.execute = [](ScriptedCommand& command) {
        command.send("listenEvents"_s, {{"channel"_s, "line0"_s}});
        return true;
    };
}
