#include "line_filter.h"

#include "lines_model.h"

LineFilter::LineFilter(QObject* parent)
    : QSortFilterProxyModel(parent)
{}

void LineFilter::setText(const QString& text)
{
    if (text != m_text) {
        m_text = text;
        invalidateFilter();
        Q_EMIT textChanged();
    }
}

bool LineFilter::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    const QModelIndex row = sourceModel()->index(sourceRow, 0, sourceParent);
    return row.data(LinesModel::NameRole).toString().contains(m_text, Qt::CaseInsensitive) ||
           row.data(LinesModel::ChannelsRole).toString().contains(m_text, Qt::CaseInsensitive);
}
