#include "page_reads_model.h"

#include "local_text.h"
#include "texts.h"

#include <configuration/value_text.h>

PageReadsModel::PageReadsModel(DeviceClock* clock, QObject* parent)
    : QAbstractListModel(parent)
    , m_clock(clock)
{
    connect(clock, &DeviceClock::ticked, this, &PageReadsModel::tell);
}

int PageReadsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_reads.size());
}

QVariant PageReadsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return QVariant();
    }
    const Read& read = m_reads.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case TimeRole:
        return timeOfDayText(m_clock->scheduler().wallClock(read.timeUs));
    case Qt::DisplayRole:
    case CommandRole:
        return invocationText(read.command, read.arguments);
    case DetailRole:
        return read.problem.isEmpty() ? assignmentsText(read.results) : worded(read.problem);
    case FailedRole:
        return !read.problem.isEmpty();
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> PageReadsModel::roleNames() const
{
    return {{TimeRole, "time"}, {CommandRole, "command"}, {DetailRole, "detail"}, {FailedRole, "failed"}};
}

void PageReadsModel::add(const QString& command, const QVariantMap& arguments, const QVariantMap& results,
                         const DFailure& failure)
{
    ++m_total;
    m_failed += failure ? 1 : 0;
    m_new.push_front({m_clock->scheduler().now(), command, arguments, results, failure.text});
    if (m_new.size() > c_mostReads) {
        m_new.pop_back();
    }
    m_clock->want();
}

void PageReadsModel::tell()
{
    if (m_new.empty()) {
        return;
    }
    const auto kept = static_cast<int>(c_mostReads - m_new.size());
    if (rowCount() > kept) {
        beginRemoveRows(QModelIndex(), kept, rowCount() - 1);
        m_reads.resize(static_cast<std::size_t>(kept));
        endRemoveRows();
    }
    beginInsertRows(QModelIndex(), 0, static_cast<int>(m_new.size()) - 1);
    m_reads.insert(m_reads.begin(), m_new.begin(), m_new.end());
    m_new.clear();
    endInsertRows();
    Q_EMIT changed();
}
