#pragma once

#include <plugin_management/d_wording.h>
#include <plugin_management/plugin_management_global.h>

#include <QString>

class IPlugin;

/// Loads a plugin library and gives its prototype. The library stays loaded until the process ends.
class PLUGIN_MANAGEMENT_EXPORT DPluginLoader
{
public:
    /// Loads file. Nothing is thrown: see error().
    explicit DPluginLoader(const QString& file);

    /// The plugin's prototype, owned by the library; null when it could not be loaded.
    IPlugin* prototype() const { return m_prototype; }
    /// What went wrong, with the file's name; empty when the plugin was loaded.
    DWording error() const { return m_error; }

private:
    IPlugin* load(const QString& file, DWording* problem) const;

    IPlugin* m_prototype = nullptr;
    DWording m_error;
};
