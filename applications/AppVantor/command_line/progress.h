#pragma once

#include "invocation.h"

#include <process/output.h>

#include <QElapsedTimer>
#include <QTimer>

#include <optional>

/// A progress line on the terminal while something that takes a known time goes on: a pulse, or a stay of the
/// bench. In a pipe, and with JSON, there is none.
class Progress
{
public:
    /// seconds is how long the bench stays, where that is fixed.
    Progress(const Invocation& invocation, std::optional<double> seconds, const Output& output);
    /// Clears the line.
    ~Progress();
    Q_DISABLE_COPY(Progress)

private:
    void draw() const;

    QString m_title;
    qint64 m_totalMs = 0;
    QElapsedTimer m_clock;
    QTimer m_timer;
};
