#pragma once

#include <plugin_management/d_command_description.h>
#include <plugin_management/d_failure.h>
#include <plugin_management/i_command.h>
#include <plugin_management/plugin_management_global.h>

#include <utilities/d_object.h>

#include <QVector>

#include <list>
#include <memory>

class DAbstractCommand;
class DDevice;
class DOrder;
class IPlugin;

/// A channel of a tool, as configured.
struct DToolChannel
{
    QString id;
    QString name;
    QString visibility;
    /// Device channel that it is linked to; empty for none.
    QString link;
    /// Its further items by their identifiers, "link" among them.
    QVariantMap items;
};

/// A configured tool: a working plugin instance, the device it speaks to, and its configuration. Tools are
/// listed in DToolRegistry while they live.
class PLUGIN_MANAGEMENT_EXPORT DTool : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DTool)

public:
    /// Makes the tool that configuration describes ("name", "id", "channels") with a working instance of
    /// prototype, whose commands it has declared. device may be null; it must outlive the tool's orders or be
    /// destroyed whole.
    DTool(const QVariantMap& configuration, const IPlugin& prototype, DDevice* device,
          QObject* parent = nullptr);
    /// Running orders of the tool fail with "the tool was closed".
    ~DTool() override;

    /// The tool's configuration, exactly as it was read.
    const QVariantMap toolConfiguration;

    /// Identifier of the tool, as configured.
    QString id() const;
    /// The working plugin instance; null when the prototype made none for this host. Such a tool has no
    /// commands and refuses every order.
    IPlugin* plugin() const;
    /// The device; null when there is none.
    DDevice* device() const;

    /// The tool's channels, in the order of the configuration.
    const QVector<DToolChannel>& channels() const;
    /// Device channel that the channel id is linked to; empty when it is linked to none.
    QString getLinkedChannel(const QString& channel) const;
    /// Item infoKey of the channel's configuration converted to type; fallback when there is no such channel
    /// or item, or it cannot be converted.
    QVariant getInfoFromChannel(const QString& channel, const QString& infoKey, QMetaType::Type type,
                                const QVariant& fallback) const;

    /// The tool's commands, in the order of their declaration.
    QVector<DCommandDescription> commands() const;
    /// True when the command name only asks, see DCommandDescription; false when there is no such command.
    bool asks(const QString& name) const;
    /// The stop names of these commands, in the order of their declaration, as what can be ordered too: each
    /// takes the parameters of all commands that it stops. A command of the same name goes first.
    QVector<DCommandDescription> stops() const;
    /// All that can be ordered: the commands, then their stop names.
    QVector<DCommandDescription> orderables() const;
    /// Checks arguments against the declaration of command, which may be a stop name, and converts each to
    /// its declared type. Arguments that are not declared pass as sections when they are lists or maps, and
    /// all of them where nothing is declared. Returns no failure, or one that names what was wrong (the
    /// arguments are then as they were).
    DFailure checkInvocation(const QString& command, QVariantMap* arguments) const;

private:
    friend class DOrder;
    struct Private;

    /// The prototype of the command name; null when there is none.
    DAbstractCommand* prototype(const QString& name) const;
    /// As checkInvocation, with the prototype of command known.
    DFailure checkArguments(const QString& command, const DAbstractCommand* known,
                            QVariantMap* arguments) const;
    /// The latest running order that stopName stops and that was given these arguments; null when there is
    /// none.
    DOrder* orderToStop(const QString& stopName, const QVariantMap& arguments) const;
    /// Notes that order runs; what is returned stands for it at its end.
    std::list<DOrder*>::iterator orderStarted(DOrder* order);
    void orderEnded(std::list<DOrder*>::iterator order);

    std::unique_ptr<Private> d;
};
