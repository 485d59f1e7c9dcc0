#pragma once

#include "device_clock.h"

#include <plugin_management/d_failure.h>

#include <QAbstractListModel>
#include <QVariant>

#include <deque>

/// What pages have read, the latest first: each read with what came of it. Told at the clock's ticks, however
/// many there are.
class PageReadsModel : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY(PageReadsModel)
    /// Number of reads so far, those that are forgotten too.
    Q_PROPERTY(int total READ total NOTIFY changed)
    /// Number of those that failed.
    Q_PROPERTY(int failed READ failed NOTIFY changed)

public:
    enum Role
    {
        TimeRole = Qt::UserRole,
        CommandRole,
        DetailRole,
        FailedRole
    };

    /// clock tells the times, and must outlive the model.
    explicit PageReadsModel(DeviceClock* clock, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int total() const { return m_total; }
    int failed() const { return m_failed; }

    /// Notes a read that is over: command with its arguments, and what came of it.
    void add(const QString& command, const QVariantMap& arguments, const QVariantMap& results,
             const DFailure& failure);

    /// More than these are not kept.
    static constexpr int c_mostReads = 200;

Q_SIGNALS:
    void changed();

private:
    struct Read
    {
        qint64 timeUs = 0;
        QString command;
        QVariantMap arguments;
        QVariantMap results;
        DWording problem;
    };

    void tell();

    DeviceClock* const m_clock;
    std::deque<Read> m_reads;
    std::deque<Read> m_new; ///< not told yet
    int m_total = 0;
    int m_failed = 0;
};
