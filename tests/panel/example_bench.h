#pragma once

#include "literals.h"
#include "manual_scheduler.h"
#include "panel_fixture.h"
#include "recording_client.h"

#include <devices/simulated_board.h>
#include <plugin_management/d_tool.h>

#include <memory>

/// A bench whose time stands still until it is moved, so that every picture of it is the same: digital and
/// analogue lines in and out, wires, and a tool whose channels are linked to them.
class ExampleBench
{
    struct Kind
    {
        DLine::Kind kind;
        DLine::Direction direction;
        const char* type;
        const char* direct;
    };

    /// Each fourth line is of the same kind.
    static const Kind& kindOf(int line)
    {
        static const Kind kinds[] = {
            {DLine::Kind::Digital, DLine::Direction::Out, "digitalInput", "out"},
            {DLine::Kind::Digital, DLine::Direction::In, "digitalOutput", "in"},
            {DLine::Kind::Analog, DLine::Direction::In, "analogOutput", "in"},
            {DLine::Kind::Analog, DLine::Direction::Out, "analogInput", "out"},
        };
        return kinds[line % 4];
    }

    static QString lineName(int line)
    {
        static const char* names[] = {"do", "di", "ai", "ao"};
        return QLatin1String(names[line % 4]) + QString::number(line / 4);
    }

    struct Channel
    {
        QString id;
        QString name;
    };

    static Channel channelOf(int line)
    {
        static const QVector<Channel> channels = {
            {"START"_s, "Start button"_s},          {"READY"_s, "Ready lamp"_s},
            {"PRESSURE"_s, "Hydraulic pressure"_s}, {"SETPOINT"_s, "Speed set point"_s},
            {"E_STOP"_s, "Emergency stop"_s},       {"ALARM"_s, "Alarm horn"_s},
            {"TEMP_1"_s, "Bearing temperature"_s},  {"HEATER"_s, "Heater power"_s},
            {"DOOR"_s, "Cabinet door contact"_s},   {"MOTOR"_s, "Motor relay"_s},
            {"CURRENT"_s, "Motor current"_s},       {"DIMMER"_s, "Dimmer"_s},
        };
        if (line < channels.size()) {
            return channels.at(line);
        }
        return {"CH_%1"_s.arg(line), "Channel %1"_s.arg(line)};
    }

public:
    /// As many lines and as many channels as lines, 4 or more.
    explicit ExampleBench(int lines, OutputsAtEnd outputsAtEnd = OutputsAtEnd::Vanish)
    {
        SimulatedBoardSetup setup;
        QVariantList channels;
        for (int number = 0; number < lines; ++number) {
            const Kind& kind = kindOf(number);
            SimulatedBoardSetup::Line line;
            line.line = {lineName(number), kind.kind, kind.direction};
            if (number % 12 == 2) {
                line.waveform = {Waveform::Shape::Sine, 6000, 58000, 2500000 + number * 70000, 50000, 0};
            } else if (number % 12 == 10) {
                line.waveform = {Waveform::Shape::Noise,      30000, 36000, 1, 50000,
                                 static_cast<quint32>(number)};
            }
            line.level = number % 12 == 6 ? 21000 : 0;
            setup.lines.append(line);
            const Channel channel = channelOf(number);
            QVariantMap entry = channelEntry(channel.id, QLatin1String(kind.type), QLatin1String(kind.direct),
                                             lineName(number));
            entry.insert("name"_s, channel.name);
            channels.append(entry);
        }
        setup.wires.append({0, 1, 300000, false});
        m_board = makeSimulatedBoard(setup, &m_scheduler, DevicePlace::SameThread, outputsAtEnd);
        m_tool = std::make_unique<DTool>(toolEntry(channels, "Front panel"_s), builtPlugin(), m_board.get());
        m_board->open();
    }

    ManualScheduler& scheduler() { return m_scheduler; }
    LineDevice& board() { return *m_board; }
    DTool& tool() { return *m_tool; }
    QVector<DTool*> tools() const { return {m_tool.get()}; }
    void closeTool() { m_tool.reset(); }

    /// Lets us microseconds pass, during which lines are switched in a pattern of their own.
    void play(qint64 us)
    {
        constexpr qint64 stepUs = 50000;
        const int lines = m_board->lines().size();
        for (qint64 time = 0; time < us; time += stepUs) {
            const auto step = static_cast<int>(time / stepUs);
            for (int line = 0; line < lines; ++line) {
                const int period = 14 + line * 5 % 37;
                if (line % 4 == 2 || step % period != line % period) {
                    continue;
                }
                const int on = step / period % 2 == 0 ? 1 : 0;
                if (line % 4 == 1) {
                    m_board->setInput(line, on); // a wire keeps the first one
                } else {
                    m_board->send(++m_lastRequest, "setValues"_s,
                                  {{"channel"_s, lineName(line)},
                                   {"values"_s, line % 4 == 3 ? 9000 * (step / period % 7) : on}},
                                  0, &m_client);
                }
            }
            QCoreApplication::processEvents();
            m_scheduler.advance(stepUs);
        }
        QCoreApplication::processEvents();
    }

private:
    ManualScheduler m_scheduler;
    RecordingClient m_client;
    quint64 m_lastRequest = 1000000; ///< far from the numbers of the orders
    std::unique_ptr<LineDevice> m_board;
    std::unique_ptr<DTool> m_tool;
};
