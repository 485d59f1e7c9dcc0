#include "window_memory.h"

#include <QFileInfo>
#include <QUrl>

namespace {

/// What all windows remember.
QSettings memoryFile()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("appvantor"),
                     QStringLiteral("window"));
}

/// The one path of a file, also once it is gone.
QString pathOf(const QString& file)
{
    const QFileInfo info(file);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

QString groupOf(const QString& configuration, const QString& rig)
{
    if (!rig.isEmpty()) {
        return QStringLiteral("rig ") + QString::fromLatin1(QUrl::toPercentEncoding(rig));
    }
    return configuration.isEmpty() ? QStringLiteral("built-in")
                                   : QString::fromLatin1(QUrl::toPercentEncoding(pathOf(configuration)));
}

/// No configuration's group: those begin with the "/" of a path or "rig ", or are called "built-in".
QString recentKey()
{
    return QStringLiteral("recent/files");
}

} // namespace

WindowMemory::WindowMemory(const QString& configuration, const QString& rig)
    : m_settings(memoryFile())
{
    m_settings.beginGroup(groupOf(configuration, rig));
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

QStringList WindowMemory::recentFiles()
{
    QStringList there;
    const QStringList files = memoryFile().value(recentKey()).toStringList();
    for (const QString& file : files) {
        if (QFileInfo(file).isFile()) {
            there.append(file);
        }
    }
    return there;
}

void WindowMemory::noteRecent(const QString& configuration)
{
    constexpr int most = 8;
    QSettings settings = memoryFile();
    QStringList files = settings.value(recentKey()).toStringList();
    files.removeAll(pathOf(configuration));
    files.prepend(pathOf(configuration));
    settings.setValue(recentKey(), QStringList(files.mid(0, most)));
}
