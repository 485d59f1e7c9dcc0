#include "board_bench.h"

bool BoardBench::Change::operator==(const Change& other) const
{
    return line == other.line && level == other.level && timeUs == other.timeUs;
}

char* toString(const BoardBench::Change& change)
{
    return qstrdup(
        qPrintable("line %1 to %2 at %3 us"_s.arg(change.line).arg(change.level).arg(change.timeUs)));
}

BoardBench::BoardBench(const SimulatedBoardSetup& setup)
    : board(makeSimulatedBoard(setup, &scheduler, DevicePlace::SameThread))
{
    board->open();
    connect(board.get(), &LineDevice::lineChanged, this, [this](int line, const LineLevel& level) {
        changes.append({line, level.known ? level.level : -1, level.sinceUs});
    });
}

BoardBench::~BoardBench() = default;

quint64 BoardBench::send(const QString& instruction, const QVariantMap& arguments)
{
    board->send(++m_lastId, instruction, arguments, 0, &client);
    return m_lastId;
}

QVariantMap BoardBench::ask(const QString& instruction, const QVariantMap& arguments)
{
    const quint64 id = send(instruction, arguments);
    deliver();
    for (const RecordingClient::Heard& what : qAsConst(client.heard)) {
        if (what.id == id) {
            return what.failure ? QVariantMap{{"failure"_s, what.failure.text}} : what.reply;
        }
    }
    return {};
}

quint64 BoardBench::listen(const QString& channel)
{
    return send("listenEvents"_s, {{"channel"_s, channel}});
}

int BoardBench::level(int line) const
{
    const LineLevel told = board->level(line);
    return told.known ? told.level : -1;
}

void BoardBench::write(const QString& channel, const QVariant& values)
{
    send("setValues"_s, {{"channel"_s, channel}, {"values"_s, values}});
}

void BoardBench::blink(const QString& channel, int onMs, int offMs, int values)
{
    send("setBlink"_s, {{"channel"_s, channel},
                        {"values"_s, values},
                        {"pulseOnWidth"_s, onMs},
                        {"pulseOffWidth"_s, offMs},
                        {"interval"_s, onMs + offMs},
                        {"dutyCycle"_s, 0.5}});
}

void BoardBench::advanceMs(qint64 ms)
{
    scheduler.advance(ms * 1000);
    deliver();
}
