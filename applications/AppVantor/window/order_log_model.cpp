#include "order_log_model.h"

#include "../bench/value_text.h"

#include <QTime>

#include <algorithm>

OrderLogModel::OrderLogModel(QObject* parent)
    : QAbstractListModel(parent)
    , m_changed([this](int first, int last) { Q_EMIT dataChanged(index(first), index(last)); })
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
        return entry.time;
    case Qt::DisplayRole:
    case CommandRole:
        return entry.command;
    case StateRole:
        return entry.state;
    case DetailRole:
        return entry.detail;
    case EventsRole:
        return entry.events;
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> OrderLogModel::roleNames() const
{
    return {{OrderRole, "order"}, {TimeRole, "time"},     {CommandRole, "command"},
            {StateRole, "state"}, {DetailRole, "detail"}, {EventsRole, "events"}};
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
    entry.time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    entry.command =
        command + (arguments.isEmpty() ? QString() : QLatin1Char(' ') + assignmentsText(arguments));
    entry.state = QStringLiteral("running");
    m_changed.flush();
    beginInsertRows(QModelIndex(), 0, 0);
    m_entries.push_front(entry);
    endInsertRows();
    forgetEnded(c_mostEntries);
    Q_EMIT countChanged();
    Q_EMIT runningChanged();
    watch(order);
    order->start();
    if (Entry* started = find(order->id()); started != nullptr && started->order != nullptr) {
        started->state = order->isListening() ? QStringLiteral("listening") : QStringLiteral("running");
        changed(*started);
    }
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

OrderLogModel::Entry* OrderLogModel::find(quint64 id)
{
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [id](const Entry& entry) { return entry.id == id; });
    return found != m_entries.end() ? &*found : nullptr;
}

void OrderLogModel::changed(const Entry& entry)
{
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                    [&entry](const Entry& candidate) { return candidate.id == entry.id; });
    m_changed.add(static_cast<int>(std::distance(m_entries.cbegin(), found)));
}

void OrderLogModel::watch(DOrder* order)
{
    const quint64 id = order->id();
    connect(order, &DOrder::resultUpdated, this, [this, order, id] {
        if (Entry* entry = find(id)) {
            entry->detail = assignmentsText(order->results());
            changed(*entry);
        }
    });
    connect(order, &DOrder::eventReceived, this, [this, id](const QVariantMap& event) {
        if (Entry* entry = find(id)) {
            ++entry->events;
            entry->detail = assignmentsText(event);
            changed(*entry);
        }
    });
    connect(order, &DOrder::finished, this, [this, order, id](bool success, const QString& reason) {
        if (Entry* entry = find(id)) {
            entry->order = nullptr;
            entry->state = success ? QStringLiteral("done") : QStringLiteral("failed");
            if (!success) {
                entry->detail = reason;
            }
            changed(*entry);
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
            m_entries.erase(entry);
            endRemoveRows();
        }
    }
}
