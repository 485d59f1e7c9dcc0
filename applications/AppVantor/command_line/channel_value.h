#pragma once

#include "invocation.h"

#include <QVector>

#include <vector>

/// The channel id; null, and in problem why, when there is none.
const DToolChannel* findChannel(const QVector<DToolChannel>& channels, const QString& id, DWording* problem);

/// The channels ids, each once. problem receives why there is none of one of them, or nothing.
QVector<DToolChannel> findChannels(const QVector<DToolChannel>& channels, const QStringList& ids,
                                   DWording* problem);

/// The command for each of channels.
std::vector<Invocation> forEach(const QVector<DToolChannel>& channels, const QString& command);

/// The reading of a channel as people write it, and readLevel takes it: ON and OFF, or the number of an
/// analogue channel (and of a level that is neither 0 nor 1).
QString levelText(const DToolChannel& channel, const QVariant& reading);

/// The level that text stands for: ON, OFF, 1 or 0, of an analogue channel a number from 0 to 65535 or OFF.
/// problem receives what was expected instead, or nothing.
int readLevel(const DToolChannel& channel, const QString& text, DWording* problem);

/// Reads CHANNEL=VALUE into the command that brings it about. VALUE is a level as readLevel takes it, of a
/// digital channel also PULSE:MS, on for so many milliseconds, or BLINK:MS:PERCENT, a cycle of so many
/// milliseconds of which the line is on for so many percent. problem receives what is wrong, or nothing.
Invocation readSetting(const QVector<DToolChannel>& channels, const QString& word, DWording* problem);
