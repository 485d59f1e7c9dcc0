#include "scripted_plugin.h"

/// A plugin whose command gives no working instance.
class BarrenPlugin : public ScriptedPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.BarrenPlugin")

    class BarrenCommand : public ScriptedCommand
    {
    public:
        using ScriptedCommand::ScriptedCommand;
        QSharedPointer<ICommand> createCommand(const QVariantMap&) override { return {}; }
    };

public:
    IPlugin* createInstance(const QUuid&) const override { return new BarrenPlugin; }
    void initPluginCommands() override
    {
        declareInstructionCommand(new BarrenCommand(std::make_shared<CommandScript>(), {}, this));
    }
};
#include "barren_plugin.moc"
