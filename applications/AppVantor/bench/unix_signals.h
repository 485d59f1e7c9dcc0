#pragma once

#include <QObject>

/// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal, from the event loop. There is one of it, which lasts
/// until the process is about to end; from then on these signals only end a wait that stands in the way. A
/// SIGHUP that is ignored stays so.
class UnixSignals : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(UnixSignals)

public:
    explicit UnixSignals(QObject* parent = nullptr);
    ~UnixSignals() override;

    /// A descriptor that can be read while a signal waits to be passed on: who waits elsewhere than in the
    /// event loop watches it. -1 when there is none.
    static int waiting();

Q_SIGNALS:
    /// number is SIGINT, SIGTERM or SIGHUP.
    void interrupted(int number);

private:
    int m_pipe[2] = {-1, -1};
};
