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
    : board(std::make_unique<SimulatedBoard>(setup, &scheduler))
{
    connect(board.get(), &DDevice::levelChanged, this, [this](int line, int level, qint64 timeUs) {
        changes.append({line, level, timeUs});
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
            return what.failure.isEmpty() ? what.reply : QVariantMap{{"failure"_s, what.failure}};
        }
    }
    return {};
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
