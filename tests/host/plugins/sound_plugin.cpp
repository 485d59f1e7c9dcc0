#include "scripted_plugin.h"

/// A plugin that is as it should be.
class SoundPlugin : public ScriptedPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.SoundPlugin")

public:
    SoundPlugin()
        : ScriptedPlugin({std::make_shared<CommandScript>()})
    {}
};
#include "sound_plugin.moc"
