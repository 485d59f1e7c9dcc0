#pragma once

#include <devices/line_link.h>

#include <QSet>
#include <QVector>

/// Where a device itself lives.
enum class DevicePlace
{
    SameThread,     ///< in the thread of its front
    OwnThread,      ///< in a thread of its own
    RealtimeThread, ///< in a thread of its own with a real-time priority, where the system grants it
    Count
};

/// What becomes of the outputs of a device when the program lets go of it.
enum class OutputsAtEnd
{
    Vanish,   ///< they are a part of the program
    Released, ///< whether they keep their levels is up to their driver
    Stay      ///< they keep their levels
};

/// A device of named lines as the program sees it: its requests, and the levels of its lines as they were
/// told last. The device itself stands behind it.
class Q_DECL_EXPORT LineDevice : public DDevice, private LineListener
{
    Q_OBJECT
    Q_DISABLE_COPY(LineDevice)

public:
    /// Makes the closed device called name with these lines. scheduler belongs to this thread and must
    /// outlive the device.
    LineDevice(const QString& name, const QVector<DLine>& lines, DScheduler* scheduler, DevicePlace place,
               const LineDriverMaker& maker, OutputsAtEnd outputsAtEnd, QObject* parent = nullptr);
    ~LineDevice() override;

    bool isRecurring(const QString& instruction) const override;
    DWording describe(const QString& instruction, const QVariantMap& arguments) const override;

    /// The lines; level and lineChanged count them from 0 in this order.
    const QVector<DLine>& lines() const { return m_lines; }
    /// Level of a line as it was told last; an unknown one of a line that does not exist.
    LineLevel level(int line) const { return m_levels.value(line); }

    OutputsAtEnd outputsAtEnd() const { return m_outputsAtEnd; }

    /// True while requests make a line blink.
    bool blinks(int line) const { return m_blinking.contains(line); }

    /// Sets a settable line from outside to level, cut to what the line can have; other lines stay.
    void setInput(int line, int level);
    /// Plugs a simulated board in or unplugs it; does nothing to a real device.
    void setPluggedIn(bool pluggedIn);

Q_SIGNALS:
    /// A line has another level, or it is no longer known. From here a device in a thread of its own may be
    /// destroyed; one in the same thread is at work.
    void lineChanged(int line, const LineLevel& level);
    /// A line begins or ceases to blink; not emitted when the device is lost, whose lines change all.
    void blinkingChanged(int line);
    /// So many changes of lines from fromUs until untilUs, on the steady clock, came too fast and are lost;
    /// level has the present ones. Followed by lineChanged for each line that had one.
    void changesLost(quint64 count, qint64 fromUs, qint64 untilUs);

protected:
    void handleOpen() override;
    void handleClose() override;
    void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void handleCancel(quint64 id) override;

private:
    void requestAnswered(quint64 id, const QVariantMap& reply, qint64 timeUs) override;
    void eventTold(quint64 id, const QVariantMap& reply, qint64 timeUs) override;
    void eventsLeftOut(quint64 id, quint64 count) override;
    void requestRefused(quint64 id, const DFailure& failure) override;
    void lineTold(int line, const LineLevel& level) override;
    void blinkingTold(int line, bool blinks) override;
    void changesLeftOut(quint64 count, qint64 fromUs, const QMap<int, LineLevel>& levels) override;
    void stateTold(DDevice::State state, const DWording& problem, qint64 timeUs) override;
    void failureTold(const DWording& text) override;
    void forgetLevels(qint64 timeUs);

    const QVector<DLine> m_lines;
    const OutputsAtEnd m_outputsAtEnd;
    QVector<LineLevel> m_levels;
    QSet<int> m_blinking;
    std::unique_ptr<LineDriver> m_driver;
};
