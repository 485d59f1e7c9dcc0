#include "json_line.h"

#include <QVariantList>
#include <QVariantMap>

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
            object[item.key().toStdString()] = toJson(item.value());
        }
        return object;
    }
    default:
        return value.isValid() && value.canConvert(QMetaType::QString) ? toJson(value.toString()) : Json();
    }
}
