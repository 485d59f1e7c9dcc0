#pragma once

#include "changed_rows.h"
#include "device_clock.h"

#include <plugin_management/d_order.h>

#include <QAbstractListModel>

#include <deque>

class DTool;

/// What a listening order reported at a time, on the steady clock.
struct OrderEvent
{
    qint64 timeUs = 0;
    QVariantMap values;
};

/// The orders that were given in the window or clicked on a page, the latest first, and what became of them;
/// and what failed on the device that no order waits for.
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
        StateRole, ///< "running", "listening", "done", "failed", or "problem" of what is no order
        KindRole,  ///< name of the failure's kind; empty without a failure
        DetailRole,
        EventsRole,
        PageRole ///< true of a click on a page
    };

    /// clock tells the times, and must outlive the model.
    explicit OrderLogModel(DeviceClock* clock, QObject* parent = nullptr);
    ~OrderLogModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(m_entries.size()); }
    int running() const;

    /// Runs command of tool with these arguments.
    void run(DTool* tool, const QString& command, const QVariantMap& arguments);
    /// Runs what switches off everything that tool, a DTool, drives.
    Q_INVOKABLE void switchOff(QObject* tool);
    /// Notes a click on a page that is over: command with its arguments, and what became of it.
    void addClick(const QString& command, const QVariantMap& arguments, const QVariantMap& results,
                  const DFailure& failure);
    /// Notes that something failed: whose, and what, for people.
    void addProblem(const QString& name, const DWording& problem);
    /// The events of an order, the latest last; none of one that is not there.
    std::deque<OrderEvent> events(quint64 order) const;
    /// Stops the order of a row; one that has ended stays as it is.
    Q_INVOKABLE void stop(int row);
    /// Stops all orders that have not ended.
    Q_INVOKABLE void stopAll();
    /// Forgets the orders that have ended.
    Q_INVOKABLE void clear();

    /// More entries than these are not kept; the oldest that have ended go first.
    static constexpr int c_mostEntries = 500;
    /// More events of an order than these are not kept; the oldest go first.
    static constexpr std::size_t c_mostEvents = 10000;
    /// More events of all orders together than these are not kept; those of the oldest order go first.
    static constexpr std::size_t c_mostEventsOfAll = 50000;

Q_SIGNALS:
    void countChanged();
    void runningChanged();
    /// A listening order has reported.
    void eventLogged(quint64 order, const OrderEvent& event);

private:
    struct Entry
    {
        DOrder* order = nullptr; ///< until it has ended
        quint64 id = 0;
        qint64 timeUs = 0;
        QString command;
        QString state;
        QString kind;
        DWording problem;
        QVariantMap values; ///< results, or the last event
        qint64 eventUs = 0;
        int events = 0;
        quint64 lost = 0; ///< further events, which came too fast
        int rejected = 0;
        bool onPage = false;
        std::deque<OrderEvent> kept;
    };

    void add(Entry entry);
    /// The entry of an order, which counts as changed; null when it is forgotten.
    Entry* change(quint64 order);
    void watch(DOrder* order);
    void forgetEnded(int keep);
    void forgetEvent();
    QString timeText(qint64 timeUs) const;
    QString detail(const Entry& entry) const;

    DeviceClock* const m_clock;
    std::deque<Entry> m_entries;
    std::size_t m_keptEvents = 0; ///< of all orders
    ChangedRows m_changed;
};
