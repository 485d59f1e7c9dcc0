#pragma once

#include "changed_rows.h"
#include "device_clock.h"
#include "line_history.h"

#include <devices/line_device.h>

#include <QAbstractListModel>
#include <QPointer>

#include <vector>

class DTool;

/// The lines of a device with their levels, their last seconds, and the tools' channels that are linked to
/// them.
class LinesModel : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY(LinesModel)
    Q_PROPERTY(bool connected READ isConnected NOTIFY connectionChanged)
    Q_PROPERTY(QString connectionProblem READ connectionProblem NOTIFY connectionChanged)
    Q_PROPERTY(QString deviceName READ deviceName CONSTANT)
    Q_PROPERTY(int count READ count CONSTANT)

public:
    enum Role
    {
        NameRole = Qt::UserRole,
        AnalogRole,
        OutputRole,
        SettableRole,
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

    bool isConnected() const;
    QString connectionProblem() const;
    QString deviceName() const;
    int count() const { return m_lines.size(); }

    /// What line did; null when there is no such line.
    const LineHistory* history(int line) const;
    /// Highest level that line can have.
    int highestLevel(int line) const;
    const DeviceClock& clock() const { return *m_clock; }

    /// Sets an input line from outside.
    Q_INVOKABLE void setLevel(int line, int level);
    /// Level that line had at timeUs on the device's clock.
    Q_INVOKABLE int levelAt(int line, double timeUs) const;

Q_SIGNALS:
    void connectionChanged();

private:
    void linkChannels(const QVector<DTool*>& tools);

    QPointer<LineDevice> m_device;
    DeviceClock* m_clock;
    QVector<DLine> m_lines;
    QVector<QStringList> m_channels;
    std::vector<LineHistory> m_histories;
    ChangedRows m_changed;
};
