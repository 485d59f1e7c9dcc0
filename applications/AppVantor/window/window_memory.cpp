#include "window_memory.h"

#include <QFileInfo>
#include <QUrl>

namespace {

QString groupOf(const QString& configuration)
{
    if (configuration.isEmpty()) {
        return QStringLiteral("built-in");
    }
    const QString path = QFileInfo(configuration).canonicalFilePath();
    return QString::fromLatin1(QUrl::toPercentEncoding(path));
}

} // namespace

WindowMemory::WindowMemory(const QString& configuration)
    : m_settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("appvantor"),
                 QStringLiteral("window"))
{
    m_settings.beginGroup(groupOf(configuration));
}

QVariantMap WindowMemory::recall()
{
    QVariantMap values;
    const QStringList names = m_settings.childKeys();
    for (const QString& name : names) {
        values.insert(name, m_settings.value(name));
    }
    return values;
}

void WindowMemory::remember(const QVariantMap& values)
{
    m_settings.remove(QString());
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        m_settings.setValue(value.key(), *value);
    }
}
