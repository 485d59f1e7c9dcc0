#include "problem.h"

QString Problem::toString() const
{
    return toString(text.english());
}

QString Problem::toString(const QString& worded) const
{
    QString place = file;
    if (line > 0) {
        place += QStringLiteral(":%1").arg(line);
    }
    if (column > 0) {
        place += QStringLiteral(":%1").arg(column);
    }
    QString whole;
    for (const QString& part : {place, entry}) {
        if (!part.isEmpty()) {
            whole += part + QStringLiteral(": ");
        }
    }
    return whole + worded;
}
