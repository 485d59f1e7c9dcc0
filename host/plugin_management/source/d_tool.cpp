#include <plugin_management/d_tool.h>

#include "d_type_tag.h"

#include <plugin_management/d_abstract_command.h>
#include <plugin_management/d_abstract_plugin.h>
#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool_registry.h>

#include <QHash>
#include <QJsonDocument>
#include <QPointer>

#include <algorithm>
#include <map>

namespace {

using ChannelItems = QHash<QString, QVariant>;

QHash<QString, ChannelItems> channelsOf(const QVariantMap& configuration)
{
    QHash<QString, ChannelItems> channels;
    const QVariantList entries = configuration.value(QStringLiteral("channels")).toList();
    for (const QVariant& entry : entries) {
        const QVariantMap channel = entry.toMap();
        ChannelItems items;
        const QVariantList pairs = channel.value(QStringLiteral("value")).toList();
        for (const QVariant& item : pairs) {
            const QVariantMap pair = item.toMap();
            items.insert(pair.value(QStringLiteral("id")).toString(), pair.value(QStringLiteral("value")));
        }
        channels.insert(channel.value(QStringLiteral("id")).toString(), items);
    }
    return channels;
}

const DDeclaration* find(const std::vector<DDeclaration>& declarations, const QString& name)
{
    const auto found = std::find_if(declarations.cbegin(), declarations.cend(),
                                    [&name](const DDeclaration& declared) { return declared.name == name; });
    return found != declarations.cend() ? &*found : nullptr;
}

bool isSection(const QVariant& argument)
{
    const auto type = static_cast<QMetaType::Type>(argument.type());
    return type == QMetaType::QVariantList || type == QMetaType::QStringList ||
           type == QMetaType::QVariantMap;
}

/// A value as a message shows it.
QString shown(const QVariant& value)
{
    return isSection(value)
               ? QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact))
               : value.toString();
}

QString namesOf(const std::vector<DDeclaration>& declarations)
{
    QStringList names;
    for (const DDeclaration& declared : declarations) {
        names.append(QLatin1Char('"') + declared.name + QLatin1Char('"'));
    }
    return names.join(QStringLiteral(", "));
}

/// Checks arguments against what is declared and converts each to its declared type. Returns what was wrong,
/// or an empty text.
QString checkArguments(const DCommandDescription& declared, QVariantMap* arguments)
{
    const std::vector<DDeclaration>& parameters = declared.parameters;
    QVariantMap converted = *arguments;
    for (auto argument = arguments->cbegin(); argument != arguments->cend(); ++argument) {
        const DDeclaration* parameter = find(parameters, argument.key());
        if (parameter == nullptr && (parameters.empty() || isSection(*argument))) {
            continue;
        }
        if (parameter == nullptr) {
            return QStringLiteral("unknown parameter \"%1\" of command \"%2\"; it takes: %3")
                .arg(argument.key(), declared.name, namesOf(parameters));
        }
        QVariant value = *argument;
        if (!convertToTypeTag(parameter->typeTag, &value)) {
            return QStringLiteral("parameter \"%1\" of command \"%2\" cannot hold \"%3\"; expected %4")
                .arg(argument.key(), declared.name, shown(*argument), typeTagExpectation(parameter->typeTag));
        }
        if (value.userType() != argument->userType()) {
            converted.insert(argument.key(), value);
        }
    }
    *arguments = converted;
    return QString();
}

std::unique_ptr<DAbstractPlugin> makeInstance(const IPlugin& prototype, const QString& toolId)
{
    IPlugin* instance = prototype.createInstance(QUuid(toolId));
    auto* plugin = dynamic_cast<DAbstractPlugin*>(instance);
    if (plugin == nullptr) {
        delete instance;
    }
    return std::unique_ptr<DAbstractPlugin>(plugin);
}

} // namespace

struct DTool::Private
{
    QString id;
    std::unique_ptr<DAbstractPlugin> plugin;
    QPointer<DDevice> device;
    QHash<QString, ChannelItems> channels;
    std::map<quint64, DOrder*> orders; ///< by their numbers: they are closed as they were made
    bool closing = false;
};

DTool::DTool(const QVariantMap& configuration, const IPlugin& prototype, DDevice* device, QObject* parent)
    : DObject(configuration.value(QStringLiteral("name")).toString(), parent)
    , toolConfiguration(configuration)
    , d(std::make_unique<Private>())
{
    d->id = configuration.value(QStringLiteral("id")).toString();
    d->plugin = makeInstance(prototype, d->id);
    d->device = device;
    d->channels = channelsOf(configuration);
    if (d->plugin != nullptr) {
        d->plugin->setMainConfig(configuration);
        d->plugin->initPluginCommands();
    }
    DToolRegistry::instance().add(this);
}

DTool::~DTool()
{
    d->closing = true;
    DToolRegistry::instance().remove(this);
    while (!d->orders.empty()) {
        d->orders.begin()->second->toolIsClosing();
    }
}

QString DTool::id() const
{
    return d->id;
}

IPlugin* DTool::plugin() const
{
    return d->plugin.get();
}

DDevice* DTool::device() const
{
    return d->device;
}

QString DTool::getLinkedChannel(const QString& channel) const
{
    return d->channels.value(channel).value(QStringLiteral("link")).toString();
}

QVariant DTool::getInfoFromChannel(const QString& channel, const QString& infoKey, QMetaType::Type type,
                                   const QVariant& fallback) const
{
    QVariant item = d->channels.value(channel).value(infoKey);
    return item.isValid() && item.convert(type) ? item : fallback;
}

QVector<DCommandDescription> DTool::commands() const
{
    QVector<DCommandDescription> commands;
    const QStringList names = d->plugin != nullptr ? d->plugin->commandNames() : QStringList();
    for (const QString& name : names) {
        commands.append(d->plugin->command(name)->declaration());
    }
    return commands;
}

QVector<DCommandDescription> DTool::stops() const
{
    QVector<DCommandDescription> stops;
    const QVector<DCommandDescription> stoppable = commands();
    for (const DCommandDescription& command : stoppable) {
        if (command.stopName.isEmpty() || hasCommand(command.stopName)) {
            continue;
        }
        auto stop = std::find_if(stops.begin(), stops.end(), [&command](const DCommandDescription& other) {
            return other.name == command.stopName;
        });
        if (stop == stops.end()) {
            const QString description = QStringLiteral("Stops the latest running %1").arg(command.name);
            stop = stops.insert(stop, {command.stopName, QString(), description, {}, {}});
        } else {
            stop->description += QStringLiteral(" or ") + command.name;
        }
        for (const DDeclaration& parameter : command.parameters) {
            if (find(stop->parameters, parameter.name) == nullptr) {
                stop->parameters.push_back(
                    {parameter.name, parameter.typeTag, parameter.description, QVariant()});
            }
        }
    }
    return stops;
}

QString DTool::checkInvocation(const QString& command, QVariantMap* arguments) const
{
    if (d->closing) {
        return QStringLiteral("the tool was closed");
    }
    if (d->plugin == nullptr) {
        return QStringLiteral("the plugin made no instance that this host can use");
    }
    if (const DAbstractCommand* prototype = d->plugin->command(command)) {
        return checkArguments(prototype->declaration(), arguments);
    }
    QStringList known = d->plugin->commandNames();
    const QVector<DCommandDescription> stopNames = stops();
    for (const DCommandDescription& stop : stopNames) {
        if (stop.name == command) {
            return checkArguments(stop, arguments);
        }
        known.append(stop.name);
    }
    return QStringLiteral("unknown command \"%1\"; the tool has: %2")
        .arg(command, known.join(QStringLiteral(", ")));
}

bool DTool::hasCommand(const QString& name) const
{
    return d->plugin->command(name) != nullptr;
}

QSharedPointer<ICommand> DTool::makeCommand(const QString& command, const QVariantMap& arguments) const
{
    return d->plugin->command(command)->createCommand(arguments);
}

DOrder* DTool::orderToStop(const QString& stopName, const QVariantMap& arguments) const
{
    const auto found = std::find_if(d->orders.crbegin(), d->orders.crend(), [&](const auto& numbered) {
        return numbered.second->isStoppedBy(stopName, arguments);
    });
    return found != d->orders.crend() ? found->second : nullptr;
}

void DTool::orderStarted(DOrder* order)
{
    d->orders.emplace(order->id(), order);
}

void DTool::orderEnded(DOrder* order)
{
    d->orders.erase(order->id());
}
