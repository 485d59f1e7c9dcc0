#include "olm_d_gpio_channel.h"

#include <QQmlEngine>

OLM_DGpioChannel::OLM_DGpioChannel(QObject* parent)
    : QObjectListModelBase(parent)
{}

int OLM_DGpioChannel::length() const
{
    return items().size();
}

int OLM_DGpioChannel::isEmpty() const
{
    return items().isEmpty() ? 1 : 0;
}

QVariant OLM_DGpioChannel::header(int section)
{
    return headerData(section, Qt::Horizontal, Qt::DisplayRole);
}

QVariant OLM_DGpioChannel::item(int i)
{
    if (i < 0 || i >= items().size()) {
        return QVariant();
    }
    DGpioChannel* channel = items().at(i).data();
    QQmlEngine::setObjectOwnership(channel, QQmlEngine::CppOwnership);
    return QVariant::fromValue<DGpioChannel*>(channel);
}

void OLM_DGpioChannel::emitChanged()
{
    Q_EMIT changed();
}
