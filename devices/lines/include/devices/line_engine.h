#pragma once

#include <devices/line_link.h>

#include <plugin_management/d_scheduler.h>

#include <QHash>
#include <QVector>

#include <set>
#include <vector>

/// A device of named lines itself: understands the instructions to read, write, blink and listen, keeps the
/// time of its blinking, and leaves to its subclass only how a line is driven and how the device is reached.
class LineEngine : public LineDriver
{
public:
    ~LineEngine() override;
    Q_DISABLE_COPY(LineEngine)

    void close() override;
    void request(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void cancel(quint64 id) override;
    void setInput(int line, int level) override;
    void setPluggedIn(bool pluggedIn) override;

protected:
    /// scheduler and listener must outlive the engine.
    LineEngine(const QVector<DLine>& lines, DScheduler* scheduler, LineListener* listener);

    /// Drives an output line to level; it is timeUs now. Returns why it cannot be driven, or no failure; a
    /// line that changed is told with setLevel, by the subclass. A device that is lost tells its loss with
    /// setUnreachable, later.
    virtual DFailure drive(int line, int level, qint64 timeUs) = 0;

    /// The device can be reached, and the levels of its lines have been set; whatever they did before
    /// sinceUs, nobody saw it.
    void setConnected(qint64 sinceUs);
    /// The device cannot be reached: its requests and its blinking are over, no level is known.
    void setUnreachable(const DWording& problem);
    DDevice::State state() const { return m_state; }
    bool isConnected() const { return m_state == DDevice::State::Connected; }
    /// Why the device cannot be reached.
    DFailure unreachable() const { return {DFailure::Kind::DeviceUnreachable, m_problem}; }

    /// A line has the level since timeUs: remembers it and answers who listens. The level that it had already
    /// changes nothing.
    void setLevel(int line, int level, qint64 timeUs);
    /// Some lines have these known levels, by their lines, after count changes since fromUs that nobody saw.
    void setLevelsAfterLoss(quint64 count, qint64 fromUs, const QMap<int, LineLevel>& levels);
    /// A line cannot be read: until setLevel its level is unknown, and requests for it fail with failure, as
    /// do those that listen to it. The failure is told once.
    void setUnreadable(int line, const DFailure& failure);
    int level(int line) const { return m_levels.at(line).level; }
    bool isKnown(int line) const { return m_levels.at(line).known; }
    /// True while somebody listens to a line, or to all.
    bool isListenedTo() const { return !m_listenedLines.isEmpty() || !m_allListeners.empty(); }

    const QVector<DLine>& lines() const { return m_lines; }
    /// Number of a line by its name; -1 when there is none.
    int lineNamed(const QString& name) const;
    DScheduler* scheduler() const { return m_scheduler; }
    LineListener& listener() const { return *m_listener; }
    void refuse(quint64 id, const DWording& reason);

private:
    struct Blink
    {
        int level = 0;
        qint64 onUs = 0;
        qint64 periodUs = 0;
        qint64 startUs = 0;
        DScheduler::Appointment next;
    };

    void read(quint64 id, int line);
    void write(quint64 id, const QString& instruction, int line, const QVariantMap& arguments);
    void listenToLine(quint64 id, int line);
    void listenToAll(quint64 id);
    void startBlinking(int line, int level, qint64 onUs, qint64 offUs, qint64 timeUs);
    void stopBlinking(int line);
    void stopAllBlinking();
    void blinkPhase(int line);
    bool refuseUnreadable(quint64 id, int line);
    bool has(int line, int level) const;
    void take(int line, const LineLevel& level);
    void tellRequests(int line);
    QVariantMap lineReply(int line) const;
    QVariantMap allLinesReply() const;

    const QVector<DLine> m_lines;
    DScheduler* const m_scheduler;
    LineListener* const m_listener;
    DDevice::State m_state = DDevice::State::Closed;
    DWording m_problem;
    QHash<QString, int> m_lineNumbers;
    QVector<LineLevel> m_levels;
    QHash<int, Blink> m_blinks;
    QHash<int, DFailure> m_unreadable; ///< lines that cannot be read, and why
    /// Bit of each line in the number of all binary lines; -1 for a line that has none.
    QVector<int> m_bits;
    int m_binaryLines = 0;
    quint64 m_binaryLevels = 0;
    std::vector<std::set<quint64>> m_lineListeners;
    std::set<quint64> m_allListeners;
    QHash<quint64, int> m_listenedLines;
};
