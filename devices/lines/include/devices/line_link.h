#pragma once

#include <devices/line.h>

#include <plugin_management/d_device.h>

#include <QMap>

#include <functional>
#include <memory>

/// What a device of lines itself tells its front: values only, so that each may live in a thread of its own.
class LineListener
{
public:
    /// A reply to the request id, true since timeUs: the first one, or the only one.
    virtual void requestAnswered(quint64 id, const QVariantMap& reply, qint64 timeUs) = 0;
    /// A further reply to the recurring request id.
    virtual void eventTold(quint64 id, const QVariantMap& reply, qint64 timeUs) = 0;
    /// So many further replies to the request id were left out.
    virtual void eventsLeftOut(quint64 id, quint64 count) = 0;
    /// The request id is over, and why.
    virtual void requestRefused(quint64 id, const DFailure& failure) = 0;
    /// A line has another level, or it is no longer known.
    virtual void lineTold(int line, const LineLevel& level) = 0;
    /// A line begins or ceases to blink, other than by the loss of the device.
    virtual void blinkingTold(int line, bool blinks) = 0;
    /// So many changes since fromUs are left out here; levels are those that the lines which had them have
    /// after it, by their lines. Why is told as a failure.
    virtual void changesLeftOut(quint64 count, qint64 fromUs, const QMap<int, LineLevel>& levels) = 0;
    /// Since timeUs the device is Connected, and has told the levels of its lines, or it is Unreachable, and
    /// they are no longer known.
    virtual void stateTold(DDevice::State state, const DWording& problem, qint64 timeUs) = 0;
    /// Something failed that nobody waits for.
    virtual void failureTold(const DWording& text) = 0;

protected:
    ~LineListener() = default;
};

/// What a device of lines itself is asked by its front.
class LineDriver
{
public:
    virtual ~LineDriver() = default;

    /// Reaches for the device, and tells what comes of it; from then on tries again by itself.
    virtual void open() = 0;
    /// Lets go of the device and of all requests.
    virtual void close() = 0;
    /// Carries out the request id.
    virtual void request(quint64 id, const QString& instruction, const QVariantMap& arguments) = 0;
    /// Nobody hears of the request id any more. Does nothing when it is over.
    virtual void cancel(quint64 id) = 0;
    /// Sets a settable line from outside.
    virtual void setInput(int line, int level) = 0;
    /// Plugs a simulated device in or unplugs it; does nothing to a real one.
    virtual void setPluggedIn(bool pluggedIn) = 0;
};

/// The failure that is told of so many changes that came too fast for who hears of them.
DWording changesLeftOutText(quint64 count);

/// Makes a device in the thread that it is to live in; scheduler and listener outlive it.
using LineDriverMaker =
    std::function<std::unique_ptr<LineDriver>(DScheduler* scheduler, LineListener* listener)>;
