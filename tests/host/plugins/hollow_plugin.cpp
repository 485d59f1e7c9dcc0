#include "scripted_plugin.h"

/// A plugin that makes no instance for a tool.
class HollowPlugin : public ScriptedPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.HollowPlugin")

public:
    IPlugin* createInstance(const QUuid&) const override { return nullptr; }
};
#include "hollow_plugin.moc"
