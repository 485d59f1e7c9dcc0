#pragma once

#include <QQuickItem>
#include <QSet>

/// Keeps the rows of a long list from all being there at once, where a Repeater makes them in a Flickable: of
/// those that are out of sight, only the places are. The garbage collector marks all items in one go, and
/// each frame walks through them.
///
/// It does so with rows that are Loaders, after as many as there are at once in any case. How high the others
/// are the first of them tells.
class RowsInView : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(RowsInView)

public:
    /// Watches over the rows that repeater makes from now on, if it stands in a Flickable.
    static void watch(QQuickItem* repeater);

private Q_SLOTS:
    void holdPlace(int index, QQuickItem* row);
    void showThoseInView();

private:
    RowsInView(QQuickItem* repeater, QQuickItem* view);

    void adoptNew();
    void forget(QObject* row);

    QQuickItem* const m_column;
    QQuickItem* const m_view;
    double m_rowHeight = 0;
    QSet<QObject*> m_known;
    QVector<QQuickItem*> m_rows; // those of them that come and go
};
