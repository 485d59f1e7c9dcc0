#include "rows_in_view.h"

#include "gradual_rows.h"

namespace {

void setMade(QQuickItem* row, bool made)
{
    row->setProperty("active", made);
}

bool isMade(const QQuickItem* row)
{
    return row->property("active").toBool();
}

} // namespace

void RowsInView::watch(QQuickItem* repeater)
{
    for (QQuickItem* item = repeater->parentItem(); item != nullptr; item = item->parentItem()) {
        if (item->inherits("QQuickFlickable")) {
            new RowsInView(repeater, item);
            return;
        }
    }
}

RowsInView::RowsInView(QQuickItem* repeater, QQuickItem* view)
    : QObject(repeater)
    , m_column(repeater->parentItem())
    , m_view(view)
{
    connect(m_column, &QQuickItem::childrenChanged, this, &RowsInView::adoptLast);
    connect(repeater, SIGNAL(itemAdded(int, QQuickItem*)), this, SLOT(holdPlace(int, QQuickItem*)));
    connect(m_column, &QQuickItem::heightChanged, this,
            &RowsInView::showThoseInView); // they have their places
    connect(m_view, &QQuickItem::heightChanged, this, &RowsInView::showThoseInView);
    connect(m_view, SIGNAL(contentYChanged()), this, SLOT(showThoseInView()));
}

/// A new child is the last one.
void RowsInView::adoptLast()
{
    const QList<QQuickItem*> children = m_column->childItems();
    if (!children.isEmpty()) {
        adopt(children.constLast());
    }
}

void RowsInView::adopt(QQuickItem* row)
{
    if (m_known.contains(row) || !row->inherits("QQuickLoader")) {
        return;
    }
    m_known.insert(row);
    connect(row, &QObject::destroyed, this, &RowsInView::forget);
    if (m_known.size() > GradualRows::c_first) {
        m_rows.append(row);
        setMade(row, false);
    }
}

void RowsInView::forget(QObject* row)
{
    m_known.remove(row);
    m_rows.removeOne(static_cast<QQuickItem*>(row));
}

/// A row that shows nothing takes no place.
void RowsInView::holdPlace(int index, QQuickItem* row)
{
    Q_UNUSED(index)
    adopt(row);
    if (m_rows.isEmpty() || m_rows.constLast() != row ||
        row->property("sourceComponent").value<QObject*>() == nullptr) {
        return;
    }
    if (m_rowHeight <= 0) {
        setMade(row, true);
        m_rowHeight = row->height();
    }
    row->setHeight(m_rowHeight);
}

/// Half a view before and after belongs to it, for the next step of who scrolls or goes on with the keyboard.
void RowsInView::showThoseInView()
{
    const double margin = m_view->height() / 2;
    const double top = m_column->mapFromItem(m_view, QPointF()).y() - margin;
    const double bottom = top + m_view->height() + 2 * margin;
    for (QQuickItem* row : qAsConst(m_rows)) {
        const bool isSeen = row->height() > 0 && row->y() < bottom && row->y() + row->height() > top;
        const bool wanted = isSeen || row->hasActiveFocus();
        if (wanted != isMade(row)) {
            setMade(row, wanted);
        }
    }
}
