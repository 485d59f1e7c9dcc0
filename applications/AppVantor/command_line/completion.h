#pragma once

#include <QStringList>

class ChannelNames;
class DTool;

/// What word may be completed to, after the words before it, in a shell that has these words of its own.
QStringList completionsOf(const QStringList& before, const QString& word, const QStringList& shellWords,
                          const DTool& tool, const ChannelNames& names);
