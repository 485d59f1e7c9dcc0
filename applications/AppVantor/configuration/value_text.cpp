#include "value_text.h"

#include <QJsonDocument>
#include <QStringList>

QString valueText(const QVariant& value)
{
    if (!value.isValid()) {
        return QStringLiteral("\u2013");
    }
    const auto type = static_cast<QMetaType::Type>(value.type());
    if (type == QMetaType::QVariantList || type == QMetaType::QVariantMap || type == QMetaType::QStringList) {
        return QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact));
    }
    return value.toString();
}

QString assignmentsText(const QVariantMap& values)
{
    QStringList assignments;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        assignments.append(value.key() + QLatin1Char('=') + valueText(*value));
    }
    return assignments.join(QLatin1Char(' '));
}

QString invocationText(const QString& command, const QVariantMap& arguments)
{
    return arguments.isEmpty() ? command : command + QLatin1Char(' ') + assignmentsText(arguments);
}
