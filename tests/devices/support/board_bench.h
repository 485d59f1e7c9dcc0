#pragma once

#include "boards.h"
#include "recording_client.h"
#include "workbench.h"

#include <memory>

/// A simulated board whose time the test moves, and a client of it.
class BoardBench : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(BoardBench)

public:
    struct Change
    {
        int line;
        int level; ///< -1 for an unknown one
        qint64 timeUs;

        bool operator==(const Change& other) const;
    };

    /// Makes the board and opens it.
    explicit BoardBench(const SimulatedBoardSetup& setup);
    ~BoardBench() override;

    /// Sends a request without a time limit and returns its identifier.
    quint64 send(const QString& instruction, const QVariantMap& arguments);
    /// The same, and delivers what it brings: the reply, or the failure under the key "failure".
    QVariantMap ask(const QString& instruction, const QVariantMap& arguments);
    /// Listens to a line and returns the identifier of the request.
    quint64 listen(const QString& channel);
    /// Drives an output line to values.
    void write(const QString& channel, const QVariant& values);
    /// Starts blinking with the level values.
    void blink(const QString& channel, int onMs, int offMs, int values = 1);
    /// The level of a line as the board tells it; -1 for an unknown one.
    int level(int line) const;
    /// Moves the time forward, and delivers what that brings.
    void advanceMs(qint64 ms);

    ManualScheduler scheduler;
    RecordingClient client;
    std::unique_ptr<LineDevice> board;
    /// Every level change since the board was opened.
    QVector<Change> changes;

private:
    quint64 m_lastId = 0;
};

/// For the messages of failed comparisons.
char* toString(const BoardBench::Change& change);
