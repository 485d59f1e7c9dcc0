#include "d_type_tag.h"

#include <QVector>

#include <cmath>
#include <limits>
#include <optional>

namespace {

using Conversion = std::optional<QVariant> (*)(const QVariant&);

struct TypeTag
{
    QString name;
    Conversion convert;
    DWording expectation;
};

/// The whole number that value is, a bool counting as 0 or 1.
std::optional<qlonglong> toWholeNumber(const QVariant& value)
{
    bool ok = false;
    qlonglong number = 0;
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Double:
    case QMetaType::Float: {
        const double real = value.toDouble();
        constexpr double limit = 9007199254740992.0; // whole numbers are exact up to 2^53
        ok = std::abs(real) <= limit && std::trunc(real) == real;
        number = ok ? static_cast<qlonglong>(real) : 0;
        break;
    }
    case QMetaType::ULongLong:
        ok = value.toULongLong() <= static_cast<qulonglong>(std::numeric_limits<qlonglong>::max());
        number = ok ? value.toLongLong() : 0;
        break;
    case QMetaType::Bool:
        return value.toBool() ? 1 : 0;
    default:
        number = value.toLongLong(&ok);
    }
    return ok ? std::optional<qlonglong>(number) : std::nullopt;
}

std::optional<QVariant> toWholeNumberBetween(const QVariant& value, int lowest, int highest)
{
    const std::optional<qlonglong> number = toWholeNumber(value);
    if (!number || *number < lowest || *number > highest) {
        return std::nullopt;
    }
    return QVariant(static_cast<int>(*number));
}

std::optional<QVariant> toUi16(const QVariant& value)
{
    return toWholeNumberBetween(value, 0, std::numeric_limits<quint16>::max());
}

std::optional<QVariant> toInt(const QVariant& value)
{
    return toWholeNumberBetween(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

std::optional<QVariant> toBool(const QVariant& value)
{
    const QString text = value.toString().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1")) {
        return QVariant(true);
    }
    if (text == QLatin1String("false") || text == QLatin1String("0")) {
        return QVariant(false);
    }
    return std::nullopt;
}

std::optional<QVariant> toText(const QVariant& value)
{
    QVariant text = value;
    return text.convert(QMetaType::QString) ? std::optional<QVariant>(text) : std::nullopt;
}

const TypeTag* find(const QString& tag)
{
    static const QVector<TypeTag> tags = {
        {QStringLiteral("strg"), toText, wording("a text")},
        {QStringLiteral("ui16"), toUi16, wording("a whole number from 0 to 65535")},
        {QStringLiteral("int"), toInt, wording("a whole number from -2147483648 to 2147483647")},
        {QStringLiteral("bool"), toBool, wording("true or false")},
    };
    for (const TypeTag& known : tags) {
        if (known.name == tag) {
            return &known;
        }
    }
    return nullptr;
}

} // namespace

/// Only a text is whole without a look at its value.
bool isOfTypeTag(const QString& tag, const QVariant& value)
{
    return value.userType() == QMetaType::QString && tag == QLatin1String("strg");
}

bool convertToTypeTag(const QString& tag, QVariant* value)
{
    const TypeTag* known = find(tag);
    if (known == nullptr) {
        return true;
    }
    const std::optional<QVariant> converted = known->convert(*value);
    if (!converted) {
        return false;
    }
    *value = *converted;
    return true;
}

DWording typeTagExpectation(const QString& tag)
{
    const TypeTag* known = find(tag);
    return known != nullptr ? known->expectation : wording("any value");
}
