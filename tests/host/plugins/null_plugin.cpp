#include "scripted_plugin.h"

#include <QtPlugin>

/// A plugin whose entry point gives no instance.
class NullPlugin : public ScriptedPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.NullPlugin")
};

#undef Q_PLUGIN_INSTANCE
#define Q_PLUGIN_INSTANCE(IMPLEMENTATION)                                                                    \
    {                                                                                                        \
        return nullptr;                                                                                      \
    }
#include "null_plugin.moc"
