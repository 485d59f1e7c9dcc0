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
#include <iterator>

namespace {

DToolChannel channelOf(const QVariantMap& entry)
{
    DToolChannel channel;
    channel.id = entry.value(QStringLiteral("id")).toString();
    channel.name = entry.value(QStringLiteral("name")).toString();
    channel.visibility = entry.value(QStringLiteral("visibility")).toString();
    const QVariantList items = entry.value(QStringLiteral("value")).toList();
    for (const QVariant& element : items) {
        const QVariantMap item = element.toMap();
        channel.items.insert(item.value(QStringLiteral("id")).toString(),
                             item.value(QStringLiteral("value")));
    }
    channel.link = channel.items.value(QStringLiteral("link")).toString();
    return channel;
}

const DDeclaration* find(const DDeclarations& declarations, const QString& name)
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

QString namesOf(const DDeclarations& declarations)
{
    QStringList names;
    for (const DDeclaration& declared : declarations) {
        names.append(QLatin1Char('"') + declared.name + QLatin1Char('"'));
    }
    return names.join(QStringLiteral(", "));
}

/// Checks arguments against what is declared and converts each to its declared type. Returns what was wrong,
/// or nothing.
DWording problemOf(const DCommandDescription& declared, QVariantMap* arguments)
{
    const DDeclarations& parameters = declared.parameters;
    QVariantMap converted; // empty while they stay as they are
    for (auto argument = arguments->cbegin(); argument != arguments->cend(); ++argument) {
        const DDeclaration* parameter = find(parameters, argument.key());
        if (parameter == nullptr && (parameters.empty() || isSection(*argument))) {
            continue;
        }
        if (parameter == nullptr) {
            return wording(R"(unknown parameter "%1" of command "%2"; it takes: %3)")
                .arg(argument.key(), declared.name, namesOf(parameters));
        }
        if (isOfTypeTag(parameter->typeTag, *argument)) {
            continue;
        }
        QVariant value = *argument;
        if (!convertToTypeTag(parameter->typeTag, &value)) {
            return wording(R"(parameter "%1" of command "%2" cannot hold "%3"; expected %4)")
                .arg(argument.key(), declared.name, shown(*argument), typeTagExpectation(parameter->typeTag));
        }
        if (value.userType() != argument->userType()) {
            if (converted.isEmpty()) {
                converted = *arguments;
            }
            converted.insert(argument.key(), value);
        }
    }
    if (!converted.isEmpty()) {
        *arguments = converted;
    }
    return {};
}

/// No failure for nothing.
DFailure wrongInvocation(const DWording& problem)
{
    return problem.isEmpty() ? DFailure() : DFailure{DFailure::Kind::WrongInvocation, problem};
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
    QVector<DToolChannel> channels;
    QHash<QString, int> channelRows;
    std::list<DOrder*> orders; ///< those that run, as they were started
    std::list<DOrder*> places; ///< where orders stood that have ended: taken again by the next ones
    bool closing = false;

    /// Null when there is no such channel.
    const DToolChannel* channel(const QString& channelId) const;
};

const DToolChannel* DTool::Private::channel(const QString& channelId) const
{
    const int row = channelRows.value(channelId, -1);
    return row >= 0 ? &channels.at(row) : nullptr;
}

DTool::DTool(const QVariantMap& configuration, const IPlugin& prototype, DDevice* device, QObject* parent)
    : DObject(configuration.value(QStringLiteral("name")).toString(), parent)
    , toolConfiguration(configuration)
    , d(std::make_unique<Private>())
{
    d->id = configuration.value(QStringLiteral("id")).toString();
    d->plugin = makeInstance(prototype, d->id);
    d->device = device;
    const QVariantList entries = configuration.value(QStringLiteral("channels")).toList();
    for (const QVariant& entry : entries) {
        d->channels.append(channelOf(entry.toMap()));
        d->channelRows.insert(d->channels.last().id, d->channels.size() - 1);
    }
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
        d->orders.front()->toolIsClosing();
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

const QVector<DToolChannel>& DTool::channels() const
{
    return d->channels;
}

QString DTool::getLinkedChannel(const QString& channel) const
{
    const DToolChannel* known = d->channel(channel);
    return known != nullptr ? known->link : QString();
}

QVariant DTool::getInfoFromChannel(const QString& channel, const QString& infoKey, QMetaType::Type type,
                                   const QVariant& fallback) const
{
    const DToolChannel* known = d->channel(channel);
    QVariant item = known != nullptr ? known->items.value(infoKey) : QVariant();
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

bool DTool::asks(const QString& name) const
{
    const DAbstractCommand* command = prototype(name);
    return command != nullptr && command->declaration().asks();
}

QVector<DCommandDescription> DTool::stops() const
{
    QVector<DCommandDescription> stops;
    const QVector<DCommandDescription> stoppable = commands();
    for (const DCommandDescription& command : stoppable) {
        if (command.stopName.isEmpty() || prototype(command.stopName) != nullptr) {
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

QVector<DCommandDescription> DTool::orderables() const
{
    return commands() + stops();
}

DFailure DTool::checkInvocation(const QString& command, QVariantMap* arguments) const
{
    return checkArguments(command, prototype(command), arguments);
}

DFailure DTool::checkArguments(const QString& command, const DAbstractCommand* known,
                               QVariantMap* arguments) const
{
    if (d->closing) {
        return {DFailure::Kind::ToolClosed, wording("the tool was closed")};
    }
    if (d->plugin == nullptr) {
        return {DFailure::Kind::WrongInvocation,
                wording("the plugin made no instance that this host can use")};
    }
    if (known != nullptr) {
        return wrongInvocation(problemOf(known->declaration(), arguments));
    }
    QStringList names = d->plugin->commandNames();
    const QVector<DCommandDescription> stopNames = stops();
    for (const DCommandDescription& stop : stopNames) {
        if (stop.name == command) {
            return wrongInvocation(problemOf(stop, arguments));
        }
        names.append(stop.name);
    }
    return wrongInvocation(
        wording(R"(unknown command "%1"; the tool has: %2)").arg(command, names.join(QStringLiteral(", "))));
}

DAbstractCommand* DTool::prototype(const QString& name) const
{
    return d->plugin != nullptr ? d->plugin->command(name) : nullptr;
}

DOrder* DTool::orderToStop(const QString& stopName, const QVariantMap& arguments) const
{
    const auto found = std::find_if(d->orders.crbegin(), d->orders.crend(), [&](const DOrder* order) {
        return order->isStoppedBy(stopName, arguments);
    });
    return found != d->orders.crend() ? *found : nullptr;
}

std::list<DOrder*>::iterator DTool::orderStarted(DOrder* order)
{
    if (d->places.empty()) {
        d->places.push_back(nullptr);
    }
    d->places.front() = order;
    d->orders.splice(d->orders.end(), d->places, d->places.begin());
    return std::prev(d->orders.end());
}

void DTool::orderEnded(std::list<DOrder*>::iterator order)
{
    d->places.splice(d->places.begin(), d->orders, order);
}
