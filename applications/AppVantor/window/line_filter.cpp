#include "line_filter.h"

#include "lines_model.h"

#include <QHash>

#include <algorithm>
#include <numeric>

LineFilter::LineFilter(QObject* parent)
    : QSortFilterProxyModel(parent)
{
    m_collator.setNumericMode(true);
    setDynamicSortFilter(false); // levels change neither place nor name
}

void LineFilter::setSourceModel(QAbstractItemModel* model)
{
    m_hidden.clear();
    m_places.resize(model->rowCount());
    std::iota(m_places.begin(), m_places.end(), 0);
    QSortFilterProxyModel::setSourceModel(model);
    sort(0);
}

void LineFilter::setText(const QString& text)
{
    if (text != m_text) {
        m_text = text;
        invalidateFilter();
        Q_EMIT textChanged();
    }
}

void LineFilter::setGrouped(bool grouped)
{
    if (grouped != m_grouped) {
        m_grouped = grouped;
        sortAnew();
    }
}

void LineFilter::hide(const QList<int>& lines)
{
    for (const int line : lines) {
        if (line >= 0 && line < m_places.size()) {
            m_hidden.insert(line);
        }
    }
    invalidateFilter();
    Q_EMIT hiddenChanged();
}

void LineFilter::showHidden()
{
    m_hidden.clear();
    invalidateFilter();
    Q_EMIT hiddenChanged();
}

int LineFilter::rowOf(int line) const
{
    return mapFromSource(sourceModel()->index(line, 0)).row();
}

bool LineFilter::move(int row, int by)
{
    if (row < 0 || row >= rowCount() || row + by < 0 || row + by >= rowCount()) {
        return false;
    }
    QVector<int> shown; // in the order that is seen, which may be that of the groups
    for (int one = 0; one < rowCount(); ++one) {
        shown.append(mapToSource(index(one, 0)).row());
    }
    QVector<int> places;
    for (const int sourceRow : qAsConst(shown)) {
        places.append(m_places.at(sourceRow));
    }
    std::sort(places.begin(), places.end());
    std::swap(shown[row], shown[row + by]);
    for (int one = 0; one < shown.size(); ++one) {
        m_places[shown.at(one)] = places.at(one);
    }
    m_grouped = false;
    sortAnew();
    return true;
}

QStringList LineFilter::order() const
{
    QVector<int> rows(m_places.size());
    for (int row = 0; row < m_places.size(); ++row) {
        rows[m_places.at(row)] = row;
    }
    QStringList names;
    for (const int row : qAsConst(rows)) {
        names.append(nameOf(row));
    }
    return names;
}

QStringList LineFilter::hidden() const
{
    QStringList names;
    for (const int row : m_hidden) {
        names.append(nameOf(row));
    }
    names.sort();
    return names;
}

void LineFilter::arrange(const QStringList& order, const QStringList& hidden)
{
    QVector<int> rows(m_places.size());
    std::iota(rows.begin(), rows.end(), 0);
    QHash<QString, int> wanted;
    for (int place = order.size() - 1; place >= 0; --place) {
        wanted.insert(order.at(place), place); // the first of a name counts
    }
    const QSet<QString> hiddenNames(hidden.cbegin(), hidden.cend());
    QVector<int> wantedPlaces(rows.size());
    std::transform(rows.cbegin(), rows.cend(), wantedPlaces.begin(),
                   [&](int row) { return wanted.value(nameOf(row), order.size()); });
    std::stable_sort(rows.begin(), rows.end(),
                     [&](int left, int right) { return wantedPlaces.at(left) < wantedPlaces.at(right); });
    m_hidden.clear();
    for (int place = 0; place < rows.size(); ++place) {
        m_places[rows.at(place)] = place;
        if (hiddenNames.contains(nameOf(rows.at(place)))) {
            m_hidden.insert(rows.at(place));
        }
    }
    invalidateFilter();
    sortAnew();
    Q_EMIT hiddenChanged();
}

bool LineFilter::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    const QModelIndex row = sourceModel()->index(sourceRow, 0, sourceParent);
    return !m_hidden.contains(sourceRow) &&
           (row.data(LinesModel::NameRole).toString().contains(m_text, Qt::CaseInsensitive) ||
            row.data(LinesModel::ChannelsRole).toString().contains(m_text, Qt::CaseInsensitive));
}

bool LineFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    if (!m_grouped) {
        return m_places.at(left.row()) < m_places.at(right.row());
    }
    const int groups = m_collator.compare(left.data(LinesModel::GroupRole).toString(),
                                          right.data(LinesModel::GroupRole).toString());
    return groups < 0 || (groups == 0 && m_collator.compare(nameOf(left.row()), nameOf(right.row())) < 0);
}

QString LineFilter::nameOf(int sourceRow) const
{
    return sourceModel()->index(sourceRow, 0).data(LinesModel::NameRole).toString();
}

void LineFilter::sortAnew()
{
    invalidate();
    sort(0);
    Q_EMIT orderChanged();
}
