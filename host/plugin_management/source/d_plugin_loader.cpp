#include <plugin_management/d_plugin_loader.h>

#include <plugin_management/d_abstract_plugin.h>

#include <QFileInfo>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>

#include <exception>

DPluginLoader::DPluginLoader(const QString& file)
{
    DWording problem;
    m_prototype = load(file, &problem);
    if (m_prototype == nullptr) {
        m_error = wording("%1: %2").arg(file, problem);
    }
}

IPlugin* DPluginLoader::load(const QString& file, DWording* problem) const
{
    if (!QFileInfo::exists(file)) {
        *problem = wording("no such plugin library");
        return nullptr;
    }
    QPluginLoader loader(file);
    const QJsonObject metaData = loader.metaData();
    if (metaData.isEmpty()) {
        *problem =
            wording("not a plugin for this version of Qt (%1)").arg(DWording::told(loader.errorString()));
        return nullptr;
    }
    const QString iid = metaData.value(QLatin1String("IID")).toString();
    const QString expected =
        QStringLiteral("fr.velt.rd.tav.") + metaData.value(QLatin1String("className")).toString();
    if (iid != expected) {
        *problem = wording(R"(interface identifier "%1", expected "%2")").arg(iid, expected);
        return nullptr;
    }
    // Bound when they are first called: the functions of the module that every plugin with a page links.
    // Loaded together with the plugin, they and all that they stand on would be bound now.
    QLibrary(QStringLiteral("Qt5Qml"), QT_VERSION_MAJOR).load();
    // A function that is missing is found now, not when it is called: that would end the process.
    loader.setLoadHints(loader.loadHints() | QLibrary::ResolveAllSymbolsHint);
    if (!loader.load()) {
        // Qt has no words for a library that was loaded and lacks the entry point.
        *problem = QLibrary(loader.fileName()).isLoaded()
                       ? wording(R"(it has no function "qt_plugin_instance")")
                       : DWording::told(loader.errorString());
        return nullptr;
    }
    QObject* instance = nullptr;
    try {
        instance = loader.instance();
    } catch (const std::exception& exception) {
        *problem = wording("its instance could not be made: %1").arg(QString::fromUtf8(exception.what()));
        return nullptr;
    } catch (...) {
        *problem = wording("its instance could not be made: it threw something unknown");
        return nullptr;
    }
    if (instance == nullptr) {
        *problem = wording("it gave no instance");
        return nullptr;
    }
    IPlugin* plugin = qobject_cast<DAbstractPlugin*>(instance);
    if (plugin == nullptr) {
        *problem = wording("its instance is no plugin of this host");
    }
    return plugin;
}
