#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A table for people, whose columns stand below each other whatever is in them.
class Table
{
public:
    /// The least widths of the columns; the last one has none.
    explicit Table(const QVector<int>& widths);

    /// Adds a row of as many cells as there are columns.
    void add(const QStringList& cells);
    /// The rows, a line each.
    QString text() const;

private:
    QVector<int> m_widths;
    QVector<QStringList> m_rows;
};
