#include "about.h"

#include <configuration/installation.h>
#include <plugin_management/d_plugin_loader.h>
#include <plugin_management/i_plugin.h>
#include <process/exit_status.h>

#include <QCoreApplication>
#include <QDir>

namespace {

struct FoundPlugin
{
    QString file;
    QString name;
    QString problem; ///< why it has no name
};

QVector<FoundPlugin> findPlugins(const QDir& folder)
{
    QVector<FoundPlugin> plugins;
    const QStringList files = folder.entryList({QStringLiteral("lib*.so")}, QDir::Files, QDir::Name);
    for (const QString& file : files) {
        const DPluginLoader loader(folder.filePath(file));
        const QString name = loader.prototype() != nullptr ? loader.prototype()->pluginName() : QString();
        plugins.append({folder.filePath(file), name, loader.error().english()});
    }
    return plugins;
}

Json toJson(const FoundPlugin& plugin)
{
    Json json = {{"file", toJson(plugin.file)}};
    if (plugin.problem.isEmpty()) {
        json["name"] = toJson(plugin.name);
    } else {
        json["reason"] = toJson(plugin.problem);
    }
    return json;
}

Json toJson(const QVector<FoundPlugin>& plugins, const QString& folder)
{
    Json list = Json::array();
    for (const FoundPlugin& plugin : plugins) {
        list.push_back(toJson(plugin));
    }
    return {{"type", "about"},
            {"version", toJson(QCoreApplication::applicationVersion())},
            {"qt", qVersion()},
            {"pluginFolder", toJson(folder)},
            {"plugins", list}};
}

QString toText(const QVector<FoundPlugin>& plugins, const QString& folder)
{
    QString text = QStringLiteral("appvantor %1, Qt %2\nplugins in %3: %4")
                       .arg(QCoreApplication::applicationVersion(), QLatin1String(qVersion()), folder,
                            plugins.isEmpty() ? QStringLiteral("none") : QString::number(plugins.size()));
    for (const FoundPlugin& plugin : plugins) {
        text += plugin.problem.isEmpty() ? QStringLiteral("\n  %1: %2").arg(plugin.file, plugin.name)
                                         : QStringLiteral("\n  ") + plugin.problem;
    }
    return text;
}

} // namespace

int tellAbout(Output* output)
{
    const QString folder = pluginFolder();
    const QVector<FoundPlugin> plugins = findPlugins(folder);
    output->write([&] { return toJson(plugins, folder); }, [&] { return toText(plugins, folder); });
    return ExitSuccess;
}
