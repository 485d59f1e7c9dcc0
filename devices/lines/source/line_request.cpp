#include "line_request.h"

#include <cmath>
#include <limits>

namespace {

constexpr int c_highest = std::numeric_limits<quint16>::max();

std::optional<int> wholeNumber(const QVariant& value)
{
    const auto type = static_cast<QMetaType::Type>(value.type());
    if (type == QMetaType::Double || type == QMetaType::Float) {
        const double real = value.toDouble(); // which a conversion to a whole number would round
        const bool fits = real >= 0 && real <= c_highest && std::trunc(real) == real;
        return fits ? std::optional<int>(static_cast<int>(real)) : std::nullopt;
    }
    bool ok = false;
    const qlonglong number = value.toLongLong(&ok);
    const bool fits = ok && number >= 0 && number <= c_highest;
    return fits ? std::optional<int>(static_cast<int>(number)) : std::nullopt;
}

} // namespace

std::optional<int> wholeArgument(const QVariantMap& arguments, const QString& key, DWording* problem)
{
    const QVariant argument = arguments.value(key);
    const std::optional<int> number = wholeNumber(argument);
    if (!number) {
        *problem = argument.isValid()
                       ? wording(R"(malformed argument "%1": "%2", expected a whole number from 0 to %3)")
                             .arg(key, argument.toString(), c_highest)
                       : wording(R"(missing argument "%1")").arg(key);
    }
    return number;
}
