#include <QtPlugin>

/// A plugin that does nothing.
class EmptyPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "tool_gpio.benchmarks.empty")
};

#include "empty_plugin.moc"
