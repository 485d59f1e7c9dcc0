#pragma once

#include "changed_rows.h"
#include "device_clock.h"
#include "line_history.h"

#include <configuration/channel_orders.h>
#include <devices/line_device.h>

#include <QAbstractListModel>
#include <QHash>
#include <QPointer>

#include <optional>
#include <vector>

/// The lines of a device with their levels, their last seconds, and the tools' channels that are linked to
/// them.
class LinesModel : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY(LinesModel)
    /// The state of the device: "Closed", "Connecting", "Connected" or "Unreachable".
    Q_PROPERTY(QString state READ state NOTIFY stateChanged)
    /// Why the device is unreachable, for people.
    Q_PROPERTY(QString problem READ problem NOTIFY stateChanged)
    Q_PROPERTY(QString deviceName READ deviceName CONSTANT)
    Q_PROPERTY(int count READ count CONSTANT)

public:
    enum Role
    {
        NameRole = Qt::UserRole,
        AnalogRole,
        OutputRole,
        SettableRole, ///< from outside
        DrivableRole, ///< an analogue output that an order of a tool can set
        KnownRole,    ///< whether the level is known now
        StatusRole,   ///< what is known of the level: "known", "waiting", "old", "failed" or "unknown"
        BlinkingRole,
        LevelRole, ///< the last one that was known, if any; 0 otherwise
        HighestRole,
        ChannelsRole,
        GroupRole, ///< the name without the number at its end
        LineRole
    };

    /// clock must outlive the model.
    LinesModel(LineDevice* device, const QVector<DTool*>& tools, DeviceClock* clock,
               QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString state() const;
    QString problem() const;
    QString deviceName() const;
    OutputsAtEnd outputsAtEnd() const;
    int count() const { return m_lines.size(); }

    /// What line did: until now, or while the clock stands still, until it stopped, also where that is told
    /// later. Null when there is no such line.
    const LineHistory* history(int line) const;
    /// Until when it is known what the lines did: now, or when the clock stopped. While the device tells late
    /// what they did, that is when the latest of it happened.
    qint64 toldUntilUs() const;
    /// What is known of the level of line now.
    LineLevel present(int line) const { return m_device.isNull() ? LineLevel() : m_device->level(line); }
    /// Highest level that line can have.
    int highestLevel(int line) const;
    DeviceClock& clock() const { return *m_clock; }

    /// Sets an input line from outside, or has a drivable one set by an order, to the level of its range that
    /// is next to level. An input counts as having that level at once: whoever toggles it again before the
    /// device has answered toggles what was asked last.
    Q_INVOKABLE void setLevel(int line, int level);
    /// Level that line had at timeUs on the device's clock; undefined where it is not known.
    Q_INVOKABLE QVariant levelAt(int line, double timeUs) const;

    /// As many changes are remembered of all lines together; each has an equal share.
    static constexpr std::size_t c_mostChanges = 4000000;
    /// What is told longer after it happened is late.
    static constexpr qint64 c_lateUs = 200000;
    /// So long after something was told late, more of it is awaited.
    static constexpr qint64 c_awaitedUs = 500000;

Q_SIGNALS:
    void stateChanged();
    /// A line of which before was known has another level, or nobody knows its level any more.
    void lineRecorded(int line, const LineLevel& before, const LineLevel& level);
    /// A drivable line is to be set by this order of tool.
    void orderWanted(DTool* tool, const Invocation& order);

private:
    /// What an order sets an output by.
    struct Driver
    {
        QPointer<DTool> tool;
        DToolChannel channel;
    };

    bool isDrivable(int line) const;
    QString status(int line) const;
    int lastLevel(int line) const;
    LineLevel before(int line) const;
    void append(int line, const LineLevel& level);
    void record(int line, const LineLevel& level);
    void noteTime(qint64 toldUs);
    bool awaitsMore() const;
    void hold();
    void joinLater();
    int levelOf(int line) const;
    void linkChannels(const QVector<DTool*>& tools);

    QPointer<LineDevice> m_device;
    DeviceClock* m_clock;
    QVector<DLine> m_lines;
    QVector<QStringList> m_channels;
    QHash<int, Driver> m_drivers; ///< of analogue outputs
    std::vector<LineHistory> m_histories;
    std::vector<LineHistory> m_laterHistories;            ///< since the clock stopped; none while it runs
    qint64 m_toldUs = std::numeric_limits<qint64>::min(); ///< when the latest that was told happened
    std::optional<qint64> m_lateUs;                       ///< when that was told, if late
    qint64 m_lostFromUs = 0;                              ///< changes since then may be missing
    qint64 m_lostUntilUs = std::numeric_limits<qint64>::min(); ///< and until then
    /// What the device has been asked for and has not told yet.
    struct Asked
    {
        int level = 0;
        int untold = 0; ///< changes: those that it was asked for before come first
    };
    QHash<int, Asked> m_asked;
    ChangedRows m_changed;
};
