#pragma once

#include <QObject>

/// Turns SIGINT and SIGTERM into a Qt signal, from the event loop. There is one of it at a time.
class UnixSignals : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(UnixSignals)

public:
    explicit UnixSignals(QObject* parent = nullptr);
    /// The signals end the process again.
    ~UnixSignals() override;

Q_SIGNALS:
    /// number is SIGINT or SIGTERM.
    void interrupted(int number);
};
