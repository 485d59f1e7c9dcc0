#pragma once

#include <QSettings>
#include <QVariantMap>

/// What windows looked like when they were closed last, by the configurations and rigs that they showed.
class WindowMemory
{
public:
    /// Of the window for the file configuration, empty for the built-in one; or for a rig, where it is not
    /// empty.
    explicit WindowMemory(const QString& configuration, const QString& rig = {});

    /// What was remembered, by its names; empty for nothing.
    QVariantMap recall();
    /// Remembers values in place of what there is.
    void remember(const QVariantMap& values);

    /// The configuration files that were shown last, the latest first, at most eight; without those that are
    /// no longer there.
    static QStringList recentFiles();
    /// Notes that the window shows the file configuration.
    static void noteRecent(const QString& configuration);

private:
    QSettings m_settings;
};
