#include <plugin_management/d_abstract_plugin.h>

#include <plugin_management/d_abstract_command.h>

#include <QPointer>
#include <QSet>

#include <algorithm>

struct DAbstractPlugin::Private
{
    QUuid pluginUuid;
    QString pluginName;
    IPlugin::Type type;
    unsigned long long version;
    QUuid objectUuid;
    QSet<QString> readOnlyProperties;
    QVariantMap mainConfig;
    QVariantMap pluginConfig;
    QVector<QPointer<DAbstractCommand>> commands;
};

DAbstractPlugin::DAbstractPlugin(const QUuid& pluginUuid, const QString& pluginName, IPlugin::Type type,
                                 unsigned long long version, const QUuid& objectUuid, QObject* parent,
                                 bool standalone)
    : DDataStorage(pluginName, parent)
    , d(new Private{pluginUuid, pluginName, type, version, objectUuid, {}, {}, {}, {}})
{
    setData(QStringLiteral("standalone"), standalone);
}

DAbstractPlugin::~DAbstractPlugin() = default;

QUuid DAbstractPlugin::objectUuid() const
{
    return d->objectUuid;
}

QString DAbstractPlugin::getName() const
{
    return d->objectUuid.isNull() ? d->pluginName
                                  : d->pluginName + QLatin1Char(' ') + d->objectUuid.toString();
}

QUuid DAbstractPlugin::pluginUuid() const
{
    return d->pluginUuid;
}

QString DAbstractPlugin::pluginName() const
{
    return d->pluginName;
}

unsigned long long DAbstractPlugin::pluginVersion() const
{
    return d->version;
}

IPlugin::Type DAbstractPlugin::pluginType() const
{
    return d->type;
}

QStringList DAbstractPlugin::compatiblePlugins() const
{
    return {d->pluginUuid.toString()};
}

QString DAbstractPlugin::compatibilityString() const
{
    return compatiblePlugins().join(QLatin1Char(';'));
}

QVariant DAbstractPlugin::getProperty(const QString& name) const
{
    return data(name);
}

QVariant DAbstractPlugin::getProperty(const QString& name, const QVariant& fallback) const
{
    return data(name, fallback);
}

QStringList DAbstractPlugin::getFunctions() const
{
    return commandNames();
}

QString DAbstractPlugin::getFunctionDescription(const QString& name) const
{
    const DAbstractCommand* prototype = command(name);
    return prototype != nullptr ? prototype->description() : QString();
}

QVariantList DAbstractPlugin::getCommandParameters(const QString& name) const
{
    QVariantList parameters;
    if (const DAbstractCommand* prototype = command(name)) {
        for (const DDeclaration& parameter : prototype->declaration().parameters) {
            parameters.append(QVariantMap{{QStringLiteral("name"), parameter.name},
                                          {QStringLiteral("type"), parameter.typeTag},
                                          {QStringLiteral("description"), parameter.description},
                                          {QStringLiteral("default"), parameter.defaultValue}});
        }
    }
    return parameters;
}

void DAbstractPlugin::setMainConfig(const QVariantMap& config)
{
    d->mainConfig = config;
}

QVariant DAbstractPlugin::getInMainConfig(const QString& key) const
{
    return d->mainConfig.value(key);
}

QVariant DAbstractPlugin::getInPluginConfig(const QString& key) const
{
    return d->pluginConfig.value(key);
}

QString DAbstractPlugin::getDebugIdentification() const
{
    return QStringLiteral("%1 %2 version 0x%3")
        .arg(d->pluginName, d->objectUuid.toString())
        .arg(d->version, 16, 16, QLatin1Char('0'));
}

QVariantMap DAbstractPlugin::getMainConfig() const
{
    return d->mainConfig;
}

void DAbstractPlugin::setInPluginConfig(const QString& key, const QVariant& value)
{
    d->pluginConfig.insert(key, value);
}

void DAbstractPlugin::setInMainConfig(const QString& key, const QVariant& value)
{
    d->mainConfig.insert(key, value);
}

void DAbstractPlugin::setProperty(const QString& name, const QVariant& value, bool readOnly)
{
    if (d->readOnlyProperties.contains(name)) {
        return;
    }
    setData(name, value);
    if (readOnly) {
        d->readOnlyProperties.insert(name);
    }
}

void DAbstractPlugin::declareInstructionCommand(DAbstractCommand* prototype)
{
    if (prototype == nullptr) {
        return;
    }
    const QString name = prototype->commandName();
    const auto earlier = std::find_if(d->commands.begin(), d->commands.end(), [&name](const auto& declared) {
        return !declared.isNull() && declared->commandName() == name;
    });
    if (earlier != d->commands.end()) {
        *earlier = prototype;
    } else {
        d->commands.append(prototype);
    }
}

QStringList DAbstractPlugin::commandNames() const
{
    QStringList names;
    for (const QPointer<DAbstractCommand>& prototype : qAsConst(d->commands)) {
        if (!prototype.isNull()) {
            names.append(prototype->commandName());
        }
    }
    return names;
}

DAbstractCommand* DAbstractPlugin::command(const QString& name) const
{
    for (const QPointer<DAbstractCommand>& prototype : qAsConst(d->commands)) {
        if (!prototype.isNull() && prototype->declaration().name == name) {
            return prototype;
        }
    }
    return nullptr;
}
