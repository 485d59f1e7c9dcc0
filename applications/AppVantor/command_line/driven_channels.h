#pragma once

#include "invocation.h"

#include <QMap>
#include <QStringList>

class DTool;

/// Which channels blink, as far as the orders tell that set them.
class DrivenChannels
{
public:
    /// tool must outlive this.
    explicit DrivenChannels(const DTool& tool);

    /// The order of invocation has ended with success.
    void note(const Invocation& invocation);
    /// The channels that blink now.
    QStringList blinking() const { return m_blinking.values(); }

    /// True when invocation drives its channel for a time, and then off.
    static bool isPulse(const Invocation& invocation);
    static QString channelOf(const Invocation& invocation);

private:
    const DTool& m_tool;
    QMap<QString, QString> m_blinking; ///< channels, by the lines that they are linked to
};
