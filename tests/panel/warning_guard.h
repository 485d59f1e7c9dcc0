#pragma once

#include <QStringList>

/// Collects every warning and error on Qt's message log while it lives, of QML and of all others.
class WarningGuard
{
public:
    WarningGuard();
    ~WarningGuard();
    Q_DISABLE_COPY(WarningGuard)

    /// The messages since the last call, one a line; empty when there were none.
    static QString takeMessages();
};
