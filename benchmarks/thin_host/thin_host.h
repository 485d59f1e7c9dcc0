#pragma once

#include <plugin_management/i_command.h>

#include <QHash>

/// A host that does next to nothing: what it is told it keeps here, for one command at a time. What is timed
/// on it is the plugin's own work.
struct ThinHost
{
    QHash<QString, QString> links;
    ICommand::ReplyDelegate onReply;
    QVariantMap request;
    QVariantMap results;
};

extern ThinHost thinHost;
