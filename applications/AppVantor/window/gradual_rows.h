#pragma once

#include <QSortFilterProxyModel>
#include <QTimer>

class QQuickItem;

/// The rows of a model from the first on: those that fill a screen at once, then some in each pass of the
/// event loop until all are there, so that a view which makes an item of each row holds nobody up.
class GradualRows : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_DISABLE_COPY(GradualRows)

public:
    /// all must outlive this, or be destroyed together with it.
    explicit GradualRows(QAbstractItemModel* all, QObject* parent = nullptr);

    /// True when all rows are there.
    bool isComplete() const;

    /// Lets the rows of each Repeater below page that shows an item model come in this way.
    static void fill(const QQuickItem* page);

    /// Number of rows that are there at once.
    static constexpr int c_first = 64;

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    void addSome();
    void goOn();

    QTimer m_pass;
    int m_count = c_first;
};
