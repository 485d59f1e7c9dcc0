#pragma once

#include <plugin_management/d_wording.h>

#include <QMap>
#include <QStringList>

class DTool;
struct DToolChannel;

/// The names of a tool's channels, and those that a script gives them.
class ChannelNames
{
public:
    /// tool must outlive this.
    explicit ChannelNames(const DTool& tool);

    /// Takes NAME = CHANNEL, in as many words as it was written. Returns what is wrong with it, or
    /// nothing.
    DWording define(const QStringList& words);
    /// The channel that name stands for; what is no such name stands for itself.
    QString channel(const QString& name) const;
    /// The same channel of the tool; null, and in problem why, when there is none.
    const DToolChannel* find(const QString& name, DWording* problem) const;
    /// All names, the given ones first.
    QStringList all() const;

private:
    const DTool& m_tool;
    QMap<QString, QString> m_given; ///< channels, by the names that stand for them
};
