#include "order_log_model.h"

#include "local_text.h"
#include "texts.h"

#include <configuration/channel_orders.h>
#include <configuration/value_text.h>

#include <algorithm>

OrderLogModel::OrderLogModel(DeviceClock* clock, QObject* parent)
    : QAbstractListModel(parent)
    , m_clock(clock)
    , m_changed(clock, [this](int first, int last) { Q_EMIT dataChanged(index(first), index(last)); })
{}

OrderLogModel::~OrderLogModel()
{
    // An order that ends while it is destroyed finds nothing to tell.
    for (Entry& entry : m_entries) {
        delete std::exchange(entry.order, nullptr);
    }
}

int OrderLogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant OrderLogModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return QVariant();
    }
    const Entry& entry = m_entries.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case OrderRole:
        return entry.id;
    case TimeRole:
        return timeText(entry.timeUs);
    case Qt::DisplayRole:
    case CommandRole:
        return entry.command;
    case StateRole:
        return entry.state;
    case KindRole:
        return entry.kind;
    case DetailRole:
        return detail(entry);
    case EventsRole:
        return entry.events;
    case PageRole:
        return entry.onPage;
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> OrderLogModel::roleNames() const
{
    return {{OrderRole, "order"}, {TimeRole, "time"},     {CommandRole, "command"}, {StateRole, "state"},
            {KindRole, "kind"},   {DetailRole, "detail"}, {EventsRole, "events"},   {PageRole, "page"}};
}

int OrderLogModel::running() const
{
    return static_cast<int>(std::count_if(m_entries.cbegin(), m_entries.cend(),
                                          [](const Entry& entry) { return entry.order != nullptr; }));
}

void OrderLogModel::run(DTool* tool, const QString& command, const QVariantMap& arguments)
{
    auto* order = new DOrder(tool, command, arguments, this);
    Entry entry;
    entry.order = order;
    entry.id = order->id();
    entry.command = invocationText(command, arguments);
    entry.state = QStringLiteral("running");
    add(entry);
    Q_EMIT runningChanged();
    watch(order);
    order->start();
    if (Entry* started = change(entry.id); started != nullptr && started->order != nullptr) {
        started->state = order->isListening() ? QStringLiteral("listening") : QStringLiteral("running");
    }
}

void OrderLogModel::switchOff(QObject* tool)
{
    auto* const driving = qobject_cast<DTool*>(tool);
    const QVector<DToolChannel> channels = driving != nullptr ? driving->channels() : QVector<DToolChannel>();
    for (const Invocation& order : switchingOff(channels)) {
        run(driving, order.command, order.arguments);
    }
}

void OrderLogModel::addClick(const QString& command, const QVariantMap& arguments, const QVariantMap& results,
                             const DFailure& failure)
{
    Entry entry;
    entry.command = invocationText(command, arguments);
    entry.state = failure ? QStringLiteral("failed") : QStringLiteral("done");
    entry.kind = failure.kindName();
    entry.problem = failure.text;
    entry.values = results;
    entry.onPage = true;
    add(entry);
}

void OrderLogModel::addProblem(const QString& name, const DWording& problem)
{
    Entry entry;
    entry.command = name;
    entry.state = QStringLiteral("problem");
    entry.problem = problem;
    add(entry);
}

std::deque<OrderEvent> OrderLogModel::events(quint64 order) const
{
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                    [order](const Entry& entry) { return entry.id == order; });
    return found != m_entries.cend() ? found->kept : std::deque<OrderEvent>();
}

void OrderLogModel::stop(int row)
{
    if (row >= 0 && row < count()) {
        if (DOrder* order = m_entries.at(static_cast<std::size_t>(row)).order) {
            order->stop();
        }
    }
}

void OrderLogModel::stopAll()
{
    for (int row = 0; row < count(); ++row) {
        stop(row);
    }
}

void OrderLogModel::clear()
{
    forgetEnded(0);
    Q_EMIT countChanged();
}

void OrderLogModel::add(Entry entry)
{
    entry.timeUs = m_clock->scheduler().now();
    m_changed.flush(); // the rows move
    beginInsertRows(QModelIndex(), 0, 0);
    m_entries.push_front(std::move(entry));
    endInsertRows();
    forgetEnded(c_mostEntries);
    Q_EMIT countChanged();
}

OrderLogModel::Entry* OrderLogModel::change(quint64 order)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [order](const Entry& entry) { return entry.id == order; });
    if (found == m_entries.end()) {
        return nullptr;
    }
    m_changed.add(static_cast<int>(std::distance(m_entries.begin(), found)));
    return &*found;
}

void OrderLogModel::watch(DOrder* order)
{
    const quint64 id = order->id();
    connect(order, &DOrder::resultUpdated, this, [this, order, id] {
        if (Entry* entry = change(id)) {
            entry->values = order->results();
        }
    });
    connect(order, &DOrder::eventReceived, this, [this, id](const QVariantMap& event, qint64 timeUs) {
        if (Entry* entry = change(id)) {
            ++entry->events;
            entry->eventUs = timeUs;
            entry->values = event;
            entry->kept.push_back({timeUs, event});
            if (entry->kept.size() > c_mostEvents) {
                entry->kept.pop_front();
            } else {
                ++m_keptEvents;
            }
            if (m_keptEvents > c_mostEventsOfAll) {
                forgetEvent();
            }
            Q_EMIT eventLogged(id, {timeUs, event});
        }
    });
    connect(order, &DOrder::eventsLost, this, [this, id](quint64 count) {
        if (Entry* entry = change(id)) {
            entry->lost += count;
        }
    });
    connect(order, &DOrder::finished, this, [this, order, id](bool success) {
        if (Entry* entry = change(id)) {
            entry->order = nullptr;
            entry->state = success ? QStringLiteral("done") : QStringLiteral("failed");
            entry->kind = order->failure().kindName();
            entry->problem = order->failure().text;
            entry->rejected = order->rejectedReplies();
        }
        order->deleteLater();
        Q_EMIT runningChanged();
    });
}

void OrderLogModel::forgetEnded(int keep)
{
    m_changed.flush();
    for (int row = count() - 1; row >= 0 && count() > keep; --row) {
        const auto entry = m_entries.begin() + row;
        if (entry->order == nullptr) {
            beginRemoveRows(QModelIndex(), row, row);
            m_keptEvents -= entry->kept.size();
            m_entries.erase(entry);
            endRemoveRows();
        }
    }
}

/// The first of the oldest order that has any.
void OrderLogModel::forgetEvent()
{
    const auto oldest = std::find_if(m_entries.rbegin(), m_entries.rend(),
                                     [](const Entry& entry) { return !entry.kept.empty(); });
    oldest->kept.pop_front();
    --m_keptEvents;
}

QString OrderLogModel::timeText(qint64 timeUs) const
{
    return timeOfDayText(m_clock->scheduler().wallClock(timeUs));
}

QString OrderLogModel::detail(const Entry& entry) const
{
    QStringList parts;
    if (entry.events > 0) {
        parts += qtTrId("orders_events", entry.events).arg(timeText(entry.eventUs));
    }
    if (entry.lost > 0) {
        parts += qtTrId("orders_lost", static_cast<int>(entry.lost));
    }
    if (!entry.problem.isEmpty()) {
        parts += failureText(entry.kind, entry.problem);
    } else if (!entry.values.isEmpty()) {
        parts += assignmentsText(entry.values);
    }
    if (entry.rejected > 0) {
        parts += qtTrId("orders_rejected", static_cast<int>(entry.rejected));
    }
    return parts.join(QStringLiteral(" · "));
}
