#pragma once

#include <devices/scheduler.h>

#include <plugin_management/d_device.h>

#include <QHash>

#include <set>
#include <vector>

/// A device of named lines: understands the requests to read, write, blink and listen, and leaves to its
/// subclass only how a line is driven.
class LineDevice : public DDevice
{
    Q_OBJECT
    Q_DISABLE_COPY(LineDevice)

public:
    /// scheduler times the blinking; it must outlive the device.
    LineDevice(const QString& name, Scheduler* scheduler, QObject* parent = nullptr);
    ~LineDevice() override;

    QVector<DLine> lines() const override;
    int level(int line) const override;

    /// True when somebody can play the outside world, and set the levels of input lines.
    virtual bool hasSettableInputs() const;
    /// Sets an input line from outside to level; does nothing where inputs cannot be set.
    virtual void setInput(int line, int level);

    /// Microseconds on the device's steady clock, which levelChanged counts by.
    qint64 now() const;

    /// Highest level of a line: 1 of a digital one, 65535 of an analogue one.
    static int highestLevel(const DLine& line);

protected:
    /// Names the lines; their levels begin at 0. Called once, before the first request.
    void setLines(const QVector<DLine>& lines);

    /// Drives an output line to level. Returns an empty text, or why it cannot be driven. A line that changed
    /// is announced with lineChanged, by the subclass.
    virtual QString drive(int line, int level) = 0;

    /// A line has the level since timeUs: remembers it, answers who listens, and tells displays and traces.
    /// The level that it had already changes nothing.
    void lineChanged(int line, int level, qint64 timeUs);

    /// Number of a line by its name; -1 when there is none.
    int lineNamed(const QString& name) const;
    /// Ends the blinking of a line; its level stays.
    void stopBlinking(int line);
    Scheduler* scheduler() const { return m_scheduler; }

    void handleRequest(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void handleCancel(quint64 id) override;

private:
    struct Blink
    {
        int level = 0;
        qint64 onUs = 0;
        qint64 periodUs = 0;
        qint64 startUs = 0;
        Scheduler::Appointment next;
    };

    void readLine(quint64 id, int line);
    void startBlinking(int line, int level, qint64 onUs, qint64 offUs);
    void writeLine(quint64 id, const QString& instruction, int line, const QVariantMap& arguments);
    void listenToLine(quint64 id, int line);
    void listenToAll(quint64 id);
    void blinkPhase(int line);
    QVariantMap listenReply(int line) const;
    QVariantMap allLinesReply() const;

    Scheduler* m_scheduler;
    QVector<DLine> m_lines;
    QHash<QString, int> m_lineNumbers;
    QVector<int> m_levels;
    QHash<int, Blink> m_blinks;
    /// Bit of each line in the number of all binary lines; -1 for a line that has none.
    QVector<int> m_bits;
    quint64 m_binaryLevels = 0;
    std::vector<std::set<quint64>> m_lineListeners;
    std::set<quint64> m_allListeners;
    QHash<quint64, int> m_listenedLines;
};
