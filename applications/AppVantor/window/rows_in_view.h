#pragma once

#include <QQuickItem>
#include <QSet>

/// Keeps the rows of a long list from all being there at once, where a Repeater makes them in a Flickable: of
/// those that are out of sight, only the places are. The garbage collector marks all items in one go, and
/// each frame walks through them.
///
/// It does so with rows that are Loaders, after as many as there are at once in any case. How high the others
/// are the first of them tells.
///
/// The rows belong to a plugin's page and cannot ask, and a Repeater tells of a row when that has been made.
/// But it puts the row into its column before it lets the row know what to show, where it is caught. One that
/// came otherwise would be caught when it is told of: made in vain, and all the same only its place then.
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

    void adoptLast();
    void adopt(QQuickItem* row);
    void forget(QObject* row);

    QQuickItem* const m_column;
    QQuickItem* const m_view;
    double m_rowHeight = 0;
    QSet<QObject*> m_known;
    QVector<QQuickItem*> m_rows; // those of them that come and go
};
