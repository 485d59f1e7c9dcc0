#include "d_gpio_channel.h"

#include "lifecycle_trace.h"

const QMap<QString, DGpioChannel::EnChannelType> DGpioChannel::c_channelTypesMap = {
    {QStringLiteral("analogInput"), CeCtAnaIn},
    {QStringLiteral("analogOutput"), CeCtAnaOut},
    {QStringLiteral("digitalInput"), CeCtBinIn},
    {QStringLiteral("digitalOutput"), CeCtBinOut},
};

DGpioChannel::DGpioChannel(QObject* parent)
    : DObject(QStringLiteral("DGpioChannel"), parent)
{
    traceLifecycle(*this);
}

DGpioChannel::~DGpioChannel()
{
    traceLifecycle(*this);
}

QSharedPointer<DGpioChannel> DGpioChannel::create(const QMap<QString, QVariant>& entry)
{
    constexpr int longestName = 64;
    if (entry.isEmpty()) {
        return {};
    }
    auto channel = QSharedPointer<DGpioChannel>::create();
    channel->setId(entry.value(QStringLiteral("id")).toString());
    channel->setName(entry.value(QStringLiteral("name")).toString().left(longestName));
    const QVariant subEntries = entry.value(QStringLiteral("value"));
    if (subEntries.type() != QVariant::List) {
        return channel;
    }
    const QVariantList elements = subEntries.toList();
    for (const QVariant& subEntry : elements) {
        if (subEntry.type() == QVariant::Map) {
            channel->addParameter(subEntry.toMap());
        }
    }
    return channel;
}

void DGpioChannel::addParameter(const QVariantMap& subEntry)
{
    const QString key = subEntry.value(QStringLiteral("id")).toString();
    const QVariant value = subEntry.value(QStringLiteral("value"));
    m_parameters.insert(key, value);
    if (key == QLatin1String("type")) {
        setType(c_channelTypesMap.value(value.toString(), CeCtUnknown));
    }
}

QString DGpioChannel::id() const
{
    return m_id;
}

QString DGpioChannel::name() const
{
    return m_name;
}

QString DGpioChannel::label() const
{
    return m_label;
}

QVariant DGpioChannel::value() const
{
    return m_value;
}

DGpioChannel::EnChannelType DGpioChannel::type() const
{
    return m_type;
}

QVariantMap DGpioChannel::parameters() const
{
    return m_parameters;
}

void DGpioChannel::setId(const QString& id)
{
    if (id != m_id) {
        m_id = id;
        Q_EMIT idChanged();
    }
}

void DGpioChannel::setName(const QString& name)
{
    if (name != m_name) {
        m_name = name;
        Q_EMIT nameChanged();
    }
}

void DGpioChannel::setLabel(const QString& label)
{
    if (label != m_label) {
        m_label = label;
        Q_EMIT labelChanged();
    }
}

void DGpioChannel::setType(EnChannelType type)
{
    if (type != m_type) {
        m_type = type;
        Q_EMIT typeChanged();
    }
}

bool DGpioChannel::setValue(const QVariant& value)
{
    // The stored value stands on the left: the other one is converted to its type.
    if (m_value != value) {
        m_value = value;
        Q_EMIT valueChanged();
    }
    switch (m_type) {
    case CeCtAnaIn:
    case CeCtAnaOut:
        return m_value.canConvert(QMetaType::Int);
    case CeCtBinIn:
    case CeCtBinOut:
        return m_value.canConvert(QMetaType::Bool);
    default:
        return false;
    }
}

bool DGpioChannel::isSwitchable()
{
    return m_type == CeCtBinIn;
}
