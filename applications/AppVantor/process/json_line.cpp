#include "json_line.h"

#include <QVariantList>
#include <QVariantMap>

namespace {

/// Many readers keep numbers as doubles, which are exact up to 2^53 only.
bool isTooLarge(const Json& value)
{
    constexpr qint64 largest = 1LL << 53;
    if (value.is_number_unsigned()) {
        return value.get<quint64>() > static_cast<quint64>(largest);
    }
    return value.is_number_integer() && (value.get<qint64>() > largest || value.get<qint64>() < -largest);
}

} // namespace

Json toJson(const QString& text)
{
    return Json(text.toStdString());
}

Json toJson(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return value.toULongLong();
    case QMetaType::Double:
    case QMetaType::Float:
        return value.toDouble();
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        Json list = Json::array();
        const QVariantList elements = value.toList();
        for (const QVariant& element : elements) {
            list.push_back(toJson(element));
        }
        return list;
    }
    case QMetaType::QVariantMap: {
        Json object = Json::object();
        const QVariantMap map = value.toMap();
        for (auto item = map.cbegin(); item != map.cend(); ++item) {
            const std::string key = item.key().toStdString();
            object[key] = toJson(item.value());
            if (isTooLarge(object[key])) {
                object[key + "Text"] = object[key].dump();
            }
        }
        return object;
    }
    default:
        return value.isValid() && value.canConvert(QMetaType::QString) ? toJson(value.toString()) : Json();
    }
}

std::string lineOf(const Json& value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}
