#include "gradual_rows.h"

#include "rows_in_view.h"

#include <QDeadlineTimer>
#include <QQuickItem>

namespace {

constexpr int c_atATime = 4;
constexpr int c_passMs = 5; // a page has two of these models, and a frame is drawn after both

} // namespace

GradualRows::GradualRows(QAbstractItemModel* all, QObject* parent)
    : QSortFilterProxyModel(parent)
{
    connect(&m_pass, &QTimer::timeout, this, &GradualRows::addSome);
    setSourceModel(all);
    connect(all, &QAbstractItemModel::rowsInserted, this, &GradualRows::goOn);
    connect(all, &QAbstractItemModel::modelReset, this, &GradualRows::goOn);
    goOn();
}

bool GradualRows::isComplete() const
{
    return sourceModel() == nullptr || m_count >= sourceModel()->rowCount();
}

void GradualRows::fill(const QQuickItem* page)
{
    const auto items = page->findChildren<QQuickItem*>();
    for (QQuickItem* item : items) {
        if (item->inherits("QQuickRepeater")) {
            auto* all = qobject_cast<QAbstractItemModel*>(item->property("model").value<QObject*>());
            if (all != nullptr) {
                RowsInView::watch(item);
                item->setProperty("model", QVariant::fromValue<QObject*>(new GradualRows(all, item)));
            }
        }
    }
}

bool GradualRows::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    Q_UNUSED(parent)
    return row < m_count;
}

void GradualRows::addSome()
{
    const QDeadlineTimer pass(c_passMs);
    do {
        m_count += c_atATime;
        invalidateFilter();
    } while (!isComplete() && !pass.hasExpired());
    if (isComplete()) {
        m_pass.stop();
    }
}

void GradualRows::goOn()
{
    if (!isComplete()) {
        m_pass.start(0);
    }
}
