#include "scripted_plugin.h"

/// A plugin whose instance cannot be made, and which throws what is no exception.
class HurlingPlugin : public ScriptedPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.HurlingPlugin")

public:
    HurlingPlugin() { throw 42; }
};
#include "hurling_plugin.moc"
