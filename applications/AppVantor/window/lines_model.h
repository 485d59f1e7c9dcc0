#pragma once

#include "changed_rows.h"
#include "device_clock.h"
#include "line_history.h"

#include <devices/line_device.h>

#include <QAbstractListModel>
#include <QHash>
#include <QPointer>

#include <vector>

class DTool;

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
        SettableRole,
        KnownRole,
        LevelRole,
        HighestRole,
        ChannelsRole,
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
    int count() const { return m_lines.size(); }

    /// What line did: until now, or while the clock stands still, until it stopped. Null when there is no
    /// such line.
    const LineHistory* history(int line) const;
    /// Highest level that line can have.
    int highestLevel(int line) const;
    DeviceClock& clock() const { return *m_clock; }

    /// Sets an input line from outside. The line counts as having that level at once: whoever toggles it
    /// again before the device has answered toggles what was asked last.
    Q_INVOKABLE void setLevel(int line, int level);
    /// Level that line had at timeUs on the device's clock; undefined where it is not known.
    Q_INVOKABLE QVariant levelAt(int line, double timeUs) const;

Q_SIGNALS:
    void stateChanged();

private:
    void record(int line, const LineLevel& level);
    int levelOf(int line) const;
    void linkChannels(const QVector<DTool*>& tools);

    QPointer<LineDevice> m_device;
    DeviceClock* m_clock;
    QVector<DLine> m_lines;
    QVector<QStringList> m_channels;
    std::vector<LineHistory> m_histories;
    std::vector<LineHistory> m_heldHistories; ///< as they were when the clock stopped; none while it runs
    QHash<int, int> m_asked; ///< levels that the device has been asked for and has not told yet
    ChangedRows m_changed;
};
