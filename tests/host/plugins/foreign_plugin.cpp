#include "scripted_plugin.h"

/// A plugin of this host that claims an interface of another one.
class ForeignPlugin : public ScriptedPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.ForeignPlugin")
};
#include "foreign_plugin.moc"
