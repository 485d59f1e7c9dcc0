#pragma once

#include <QObject>

/// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal, from the event loop. There is one of it in the life of
/// the process. After it, these signals end only a wait that stands in the way of the end of the process. A
/// SIGHUP that is ignored stays so.
class Q_DECL_EXPORT UnixSignals : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(UnixSignals)

public:
    explicit UnixSignals(QObject* parent = nullptr);

    /// A descriptor that can be read while a signal waits to be passed on: who waits elsewhere than in the
    /// event loop watches it. -1 when there has been no UnixSignals: the signals end the process then.
    static int waiting();

Q_SIGNALS:
    /// number is SIGINT, SIGTERM or SIGHUP.
    void interrupted(int number);
};
