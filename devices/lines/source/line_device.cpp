#include <devices/line_device.h>

#include <devices/device_thread.h>

#include <plugin_management/d_scheduler.h>

#include <QPointer>

#include <algorithm>

LineDevice::LineDevice(const QString& name, const QVector<DLine>& lines, DScheduler* scheduler,
                       DevicePlace place, const LineDriverMaker& maker, OutputsAtEnd outputsAtEnd,
                       QObject* parent)
    : DDevice(name, scheduler, parent)
    , m_lines(lines)
    , m_outputsAtEnd(outputsAtEnd)
    , m_levels(lines.size())
{
    LineListener* const listener = this;
    if (place == DevicePlace::SameThread) {
        m_driver = maker(scheduler, listener);
    } else {
        m_driver = std::make_unique<DeviceThread>(maker, listener, place == DevicePlace::RealtimeThread);
    }
}

LineDevice::~LineDevice() = default;

bool LineDevice::isRecurring(const QString& instruction) const
{
    return instruction == QLatin1String("listenEvents") || instruction == QLatin1String("listenToAll");
}

DWording LineDevice::describe(const QString& instruction, const QVariantMap& arguments) const
{
    const QString channel = arguments.value(QStringLiteral("channel")).toString();
    const DWording described = DDevice::describe(instruction, arguments);
    return channel.isEmpty() ? described : wording(R"(%1 of channel "%2")").arg(described, channel);
}

void LineDevice::setInput(int line, int level)
{
    if (line >= 0 && line < m_lines.size() && m_lines.at(line).settable) {
        m_driver->setInput(line, std::clamp(level, 0, m_lines.at(line).highestLevel()));
    }
}

void LineDevice::setPluggedIn(bool pluggedIn)
{
    m_driver->setPluggedIn(pluggedIn);
}

void LineDevice::handleOpen()
{
    m_driver->open();
}

void LineDevice::handleClose()
{
    m_driver->close();
    forgetLevels(scheduler()->now());
}

void LineDevice::handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments)
{
    m_driver->request(id, instruction, arguments);
}

void LineDevice::handleCancel(quint64 id)
{
    m_driver->cancel(id);
}

void LineDevice::requestAnswered(quint64 id, const QVariantMap& reply, qint64 timeUs)
{
    DDevice::reply(id, reply, timeUs);
}

void LineDevice::eventTold(quint64 id, const QVariantMap& reply, qint64 timeUs)
{
    DDevice::reply(id, reply, timeUs);
}

void LineDevice::eventsLeftOut(quint64 id, quint64 count)
{
    tellLost(id, count);
}

void LineDevice::requestRefused(quint64 id, const DFailure& failure)
{
    fail(id, failure);
}

void LineDevice::lineTold(int line, const LineLevel& level)
{
    m_levels[line] = level;
    Q_EMIT lineChanged(line, level);
}

void LineDevice::blinkingTold(int line, bool blinks)
{
    if (blinks) {
        m_blinking.insert(line);
    } else {
        m_blinking.remove(line);
    }
    Q_EMIT blinkingChanged(line);
}

void LineDevice::changesLeftOut(quint64 count, qint64 fromUs, const QMap<int, LineLevel>& levels)
{
    qint64 untilUs = fromUs;
    for (auto line = levels.cbegin(); line != levels.cend(); ++line) {
        m_levels[line.key()] = *line;
        untilUs = std::max(untilUs, line->sinceUs);
    }
    const QPointer<LineDevice> self(this); // who hears of it may destroy the device
    Q_EMIT changesLost(count, fromUs, untilUs);
    for (auto line = levels.cbegin(); !self.isNull() && line != levels.cend(); ++line) {
        Q_EMIT lineChanged(line.key(), *line);
    }
}

DWording changesLeftOutText(quint64 count)
{
    return wording("%1 changes of lines came too fast and were left out").arg(count);
}

void LineDevice::stateTold(DDevice::State state, const DWording& problem, qint64 timeUs)
{
    if (state == State::Unreachable) {
        const QPointer<LineDevice> self(this);
        forgetLevels(timeUs);
        if (self.isNull()) {
            return;
        }
    }
    setState(state, problem);
}

void LineDevice::failureTold(const DWording& text)
{
    Q_EMIT problemTold(text);
}

void LineDevice::forgetLevels(qint64 timeUs)
{
    const LineLevel unknown = {0, timeUs, false};
    m_blinking.clear();
    const QPointer<LineDevice> self(this); // who hears of a level may destroy the device
    for (int line = 0; !self.isNull() && line < m_levels.size(); ++line) {
        if (m_levels.at(line).known) {
            lineTold(line, unknown);
        }
    }
}
