#include "scripted_plugin.h"

#include <stdexcept>

/// A plugin whose instance cannot be made.
class ThrowingPlugin : public ScriptedPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.ThrowingPlugin")

public:
    ThrowingPlugin() { throw std::runtime_error("out of magic"); }
};
#include "throwing_plugin.moc"
