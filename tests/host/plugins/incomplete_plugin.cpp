#include "scripted_plugin.h"

/// Stands in no library.
void nowhereToBeFound();

/// A plugin that calls a function which no library has.
class IncompletePlugin : public ScriptedPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.IncompletePlugin")

public:
    IncompletePlugin() { nowhereToBeFound(); }
};
#include "incomplete_plugin.moc"
