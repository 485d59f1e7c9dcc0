#include <utilities/d_version.h>

#include <QStringList>

#include <algorithm>

namespace {

/// Only digits, so that neither signs nor blanks, which Qt's conversion takes, pass.
bool isNumber(const QString& text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
}

} // namespace

unsigned long long versionFromString(const QString& text, bool* ok, QChar separator)
{
    constexpr int numbers = 4;
    const QStringList parts = text.split(separator);
    unsigned long long version = 0;
    bool valid = parts.size() <= numbers;
    for (int i = 0; valid && i < numbers; ++i) {
        const unsigned number = i < parts.size() ? parts.at(i).toUShort(&valid) : 0U;
        valid = valid && (i >= parts.size() || isNumber(parts.at(i)));
        version = version << 16U | number;
    }
    if (ok != nullptr) {
        *ok = valid;
    }
    return valid ? version : 0;
}
