#pragma once

#include "literals.h"

#include <devices/line_device.h>
#include <plugin_management/d_scheduler.h>

/// Lines of which not the same is known, named after it: a level that is asked for is never told, and what
/// fails cannot be read. Unplugged, they are old, but for what was never known.
class LineStates : public LineDriver
{
public:
    LineStates(DScheduler* scheduler, LineListener* listener)
        : m_scheduler(scheduler)
        , m_listener(listener)
    {}

    static std::unique_ptr<LineDevice> make(DScheduler* scheduler)
    {
        return std::make_unique<LineDevice>(
            "Lines"_s, lines(), scheduler, DevicePlace::SameThread,
            [](DScheduler* clock, LineListener* listener) {
                return std::make_unique<LineStates>(clock, listener);
            },
            OutputsAtEnd::Vanish);
    }

    void open() override
    {
        const QVector<DLine> all = lines();
        for (int line = 0; line < all.size(); ++line) {
            const bool isKnown = !all.at(line).name.startsWith("failed"_s);
            m_listener->lineTold(line, {all.at(line).highestLevel() / 2 + 1, m_scheduler->now(), isKnown});
        }
        m_listener->stateTold(DDevice::State::Connected, {}, m_scheduler->now());
        m_listener->blinkingTold(c_blinking, true);
    }
    void close() override {}
    void request(quint64, const QString&, const QVariantMap&) override {}
    void cancel(quint64) override {}
    void setInput(int, int) override {}
    void setPluggedIn(bool pluggedIn) override
    {
        if (!pluggedIn) {
            m_listener->stateTold(DDevice::State::Unreachable, DWording::told("unplugged"_s),
                                  m_scheduler->now());
        }
    }

    /// The line that waits for its level as soon as it is set.
    static constexpr int c_waiting = 3;

private:
    static constexpr int c_blinking = 1;

    static QVector<DLine> lines()
    {
        const auto line = [](const char* name, DLine::Kind kind, DLine::Direction direction, bool settable) {
            return DLine{QLatin1String(name), kind, direction, settable};
        };
        return {
            line("known", DLine::Kind::Digital, DLine::Direction::In, true),
            line("blinking", DLine::Kind::Digital, DLine::Direction::Out, false),
            line("driven", DLine::Kind::Digital, DLine::Direction::In, false),
            line("waiting", DLine::Kind::Digital, DLine::Direction::In, true),
            line("failed", DLine::Kind::Digital, DLine::Direction::Out, false),
            line("known_ai", DLine::Kind::Analog, DLine::Direction::In, true),
            line("failed_ai", DLine::Kind::Analog, DLine::Direction::In, false),
        };
    }

    DScheduler* const m_scheduler;
    LineListener* const m_listener;
};
