#include <QObject>

/// A Qt plugin with the right interface identifier whose instance is no plugin of this host.
class PlainObjectPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "fr.velt.rd.tav.PlainObjectPlugin")
};
#include "plain_object_plugin.moc"
