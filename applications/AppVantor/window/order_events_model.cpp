#include "order_events_model.h"

#include "csv_field.h"
#include "files.h"
#include "local_text.h"

#include <configuration/value_text.h>
#include <process/time_text.h>

#include <QClipboard>
#include <QGuiApplication>

OrderEventsModel::OrderEventsModel(OrderLogModel* log, DeviceClock* clock, QObject* parent)
    : QAbstractListModel(parent)
    , m_log(log)
    , m_clock(clock)
{
    connect(log, &OrderLogModel::eventLogged, this, [this](quint64 order, const OrderEvent& event) {
        if (order == m_order) {
            m_new.push_back(event);
        }
    });
    connect(clock, &DeviceClock::ticked, this, &OrderEventsModel::tell);
}

int OrderEventsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_events.size());
}

QVariant OrderEventsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return QVariant();
    }
    const OrderEvent& event = m_events.at(m_events.size() - 1 - static_cast<std::size_t>(index.row()));
    switch (role) {
    case TimeRole:
        return timeOfDayText(m_clock->scheduler().wallClock(event.timeUs));
    case Qt::DisplayRole:
    case TextRole:
        return assignmentsText(event.values);
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> OrderEventsModel::roleNames() const
{
    return {{TimeRole, "time"}, {TextRole, "values"}};
}

void OrderEventsModel::setOrder(quint64 order)
{
    if (order == m_order) {
        return;
    }
    beginResetModel();
    m_order = order;
    m_events = m_log->events(order);
    m_new.clear();
    endResetModel();
    Q_EMIT orderChanged();
    Q_EMIT countChanged();
}

void OrderEventsModel::tell()
{
    if (m_new.empty()) {
        return;
    }
    beginInsertRows(QModelIndex(), 0, static_cast<int>(m_new.size()) - 1);
    m_events.insert(m_events.end(), m_new.begin(), m_new.end());
    m_new.clear();
    endInsertRows();
    if (m_events.size() > OrderLogModel::c_mostEvents) {
        const auto surplus = static_cast<int>(m_events.size() - OrderLogModel::c_mostEvents);
        beginRemoveRows(QModelIndex(), rowCount() - surplus, rowCount() - 1);
        m_events.erase(m_events.begin(), m_events.begin() + surplus);
        endRemoveRows();
    }
    Q_EMIT countChanged();
}

QString OrderEventsModel::text() const
{
    if (m_events.empty()) {
        return QString();
    }
    const QStringList names = m_events.front().values.keys();
    QString text = QStringLiteral("time");
    for (const QString& name : names) {
        text += QLatin1Char(',') + csvField(name);
    }
    text += QLatin1Char('\n');
    for (const OrderEvent& event : m_events) {
        text += fullTime(m_clock->scheduler().wallClock(event.timeUs));
        for (const QString& name : names) {
            text += QLatin1Char(',') + csvField(valueText(event.values.value(name)));
        }
        text += QLatin1Char('\n');
    }
    return text;
}

void OrderEventsModel::copy() const
{
    QGuiApplication::clipboard()->setText(text());
}

QString OrderEventsModel::save(const QString& file) const
{
    return Files::write(file, text().toUtf8());
}
