#pragma once

#include "changed_rows.h"

#include <plugin_management/d_order.h>

#include <QAbstractListModel>

#include <deque>

class DTool;

/// The orders that were given in the window, the latest first, and what became of them.
class OrderLogModel : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY(OrderLogModel)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// Number of orders that have not ended.
    Q_PROPERTY(int running READ running NOTIFY runningChanged)

public:
    enum Role
    {
        OrderRole = Qt::UserRole,
        TimeRole,
        CommandRole,
        StateRole,
        DetailRole,
        EventsRole
    };

    /// How an order stands, as QML sees it under StateRole: "running", "listening", "done" or "failed".
    explicit OrderLogModel(QObject* parent = nullptr);
    ~OrderLogModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(m_entries.size()); }
    int running() const;

    /// Runs command of tool with these arguments.
    void run(DTool* tool, const QString& command, const QVariantMap& arguments);
    /// Stops the order of a row; one that has ended stays as it is.
    Q_INVOKABLE void stop(int row);
    /// Stops all orders that have not ended.
    Q_INVOKABLE void stopAll();
    /// Forgets the orders that have ended.
    Q_INVOKABLE void clear();

    /// More entries than these are not kept; the oldest that have ended go first.
    static constexpr int c_mostEntries = 500;

Q_SIGNALS:
    void countChanged();
    void runningChanged();

private:
    struct Entry
    {
        DOrder* order = nullptr;
        quint64 id = 0;
        QString time;
        QString command;
        QString state;
        QString detail;
        int events = 0;
    };

    Entry* find(quint64 id);
    void changed(const Entry& entry);
    void watch(DOrder* order);
    void forgetEnded(int keep);

    std::deque<Entry> m_entries;
    ChangedRows m_changed;
};
