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

        bool operator==(const Change& other) const
        {
            return line == other.line && level == other.level && timeUs == other.timeUs;
        }
    };

    /// Makes the board and opens it.
    explicit BoardBench(const SimulatedBoardSetup& setup)
        : board(makeSimulatedBoard(setup, &scheduler, DevicePlace::SameThread))
    {
        board->open();
        connect(board.get(), &LineDevice::lineChanged, this, [this](int line, const LineLevel& level) {
            changes.append({line, level.known ? level.level : -1, level.sinceUs});
        });
    }

    /// Sends a request without a time limit and returns its identifier.
    quint64 send(const QString& instruction, const QVariantMap& arguments)
    {
        board->send(++m_lastId, instruction, arguments, 0, &client);
        return m_lastId;
    }

    /// The same, and delivers what it brings: the reply, or the failure under the key "failure".
    QVariantMap ask(const QString& instruction, const QVariantMap& arguments)
    {
        const quint64 id = send(instruction, arguments);
        deliver();
        for (const RecordingClient::Heard& what : qAsConst(client.heard)) {
            if (what.id == id) {
                return what.failure ? QVariantMap{{"failure"_s, what.failure.text.english()}} : what.reply;
            }
        }
        return {};
    }

    /// Listens to a line and returns the identifier of the request.
    quint64 listen(const QString& channel) { return send("listenEvents"_s, {{"channel"_s, channel}}); }
    /// Drives an output line to values.
    void write(const QString& channel, const QVariant& values)
    {
        send("setValues"_s, {{"channel"_s, channel}, {"values"_s, values}});
    }
    /// Starts blinking with the level values.
    void blink(const QString& channel, int onMs, int offMs, int values = 1)
    {
        send("setBlink"_s, {{"channel"_s, channel},
                            {"values"_s, values},
                            {"pulseOnWidth"_s, onMs},
                            {"pulseOffWidth"_s, offMs},
                            {"interval"_s, onMs + offMs},
                            {"dutyCycle"_s, 0.5}});
    }

    /// The level of a line as the board tells it; -1 for an unknown one.
    int level(int line) const
    {
        const LineLevel told = board->level(line);
        return told.known ? told.level : -1;
    }

    /// Moves the time forward, and delivers what that brings.
    void advanceMs(qint64 ms)
    {
        scheduler.advance(ms * 1000);
        deliver();
    }

    ManualScheduler scheduler;
    RecordingClient client;
    std::unique_ptr<LineDevice> board;
    /// Every level change since the board was opened.
    QVector<Change> changes;

private:
    quint64 m_lastId = 0;
};

/// For the messages of failed comparisons.
inline char* toString(const BoardBench::Change& change)
{
    return qstrdup(
        qPrintable("line %1 to %2 at %3 us"_s.arg(change.line).arg(change.level).arg(change.timeUs)));
}
