#include "csv_field.h"

#include <algorithm>

QString csvField(const QString& text)
{
    const QString special = QStringLiteral(",\"\r\n");
    const bool isPlain = std::none_of(text.cbegin(), text.cend(),
                                      [&](QChar character) { return special.contains(character); });
    return isPlain ? text
                   : QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
                         QLatin1Char('"');
}
