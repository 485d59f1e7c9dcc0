#pragma once

#include "order_log_model.h"

#include <QAbstractListModel>

#include <deque>

/// The events of one order of the log, the latest first, as they come; told at the clock's ticks.
class OrderEventsModel : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY(OrderEventsModel)
    /// Number of the order whose events are shown; 0 for none.
    Q_PROPERTY(quint64 order READ order WRITE setOrder NOTIFY orderChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role
    {
        TimeRole = Qt::UserRole,
        TextRole
    };

    /// log and clock must outlive the model.
    OrderEventsModel(OrderLogModel* log, DeviceClock* clock, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    quint64 order() const { return m_order; }
    void setOrder(quint64 order);
    int count() const { return rowCount(); }

    /// The events as comma-separated values, the first one first, with a line of names above them.
    QString text() const;
    /// Puts text() on the clipboard.
    Q_INVOKABLE void copy() const;
    /// Writes text() into a file. Returns an empty text, or why it cannot be written.
    Q_INVOKABLE QString save(const QString& file) const;

Q_SIGNALS:
    void orderChanged();
    void countChanged();

private:
    void tell();

    OrderLogModel* const m_log;
    DeviceClock* const m_clock;
    quint64 m_order = 0;
    std::deque<OrderEvent> m_events; ///< the first one first
    std::deque<OrderEvent> m_new;    ///< not told yet
};
