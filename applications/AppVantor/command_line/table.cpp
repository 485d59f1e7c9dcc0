#include "table.h"

#include <configuration/json_text.h>

Table::Table(const QVector<int>& widths)
    : m_widths(widths)
{}

void Table::add(const QStringList& cells)
{
    QStringList row;
    for (const QString& cell : cells) {
        row.append(inOneLine(cell));
    }
    for (int column = 0; column < m_widths.size(); ++column) {
        m_widths[column] = qMax(m_widths.at(column), row.at(column).size());
    }
    m_rows.append(row);
}

QString Table::text() const
{
    QStringList lines;
    for (const QStringList& row : m_rows) {
        QString line;
        for (int column = 0; column < m_widths.size(); ++column) {
            line += row.at(column).leftJustified(m_widths.at(column)) + QLatin1Char(' ');
        }
        line += row.last();
        while (line.endsWith(QLatin1Char(' '))) {
            line.chop(1);
        }
        lines.append(line);
    }
    return lines.join(QLatin1Char('\n'));
}
