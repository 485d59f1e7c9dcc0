#include "be_maintenance_plugin.h"

#include "error_report.h"

namespace {
constexpr auto c_source = "plugins/p_tool_gpio/source/be_maintenance_plugin";
}

BeMaintenanceToolGpio::BeMaintenanceToolGpio(QObject* parent)
    : DAbstractPluginBackend(QStringLiteral("PlgLibToolGpio"), parent)
{
    connect(this, &DAbstractPluginBackend::abstractBackendInitialized, this,
            &BeMaintenanceToolGpio::initBackend);
    connect(this, &BeMaintenanceToolGpio::delayingClickedOnChannel, this,
            &BeMaintenanceToolGpio::clickedOnChannel, Qt::QueuedConnection);
}

QString BeMaintenanceToolGpio::connectionPath() const
{
    return m_connectionPath;
}

void BeMaintenanceToolGpio::setConnectionPath(const QString& path)
{
    if (path != m_connectionPath) {
        m_connectionPath = path;
        Q_EMIT connectionPathChanged();
    }
}

QString BeMaintenanceToolGpio::version() const
{
    return m_version;
}

void BeMaintenanceToolGpio::setVersion(const QString& version)
{
    if (version != m_version) {
        m_version = version;
        Q_EMIT versionChanged();
    }
}

OLM_DGpioChannel* BeMaintenanceToolGpio::channelsModel()
{
    return &m_channelsModel;
}

QSharedPointer<DGpioChannel> BeMaintenanceToolGpio::getChannelAt(int index)
{
    return m_channelsModel.items().value(index);
}

void BeMaintenanceToolGpio::initBackend()
{
    if (boundToolObject == nullptr) {
        return;
    }
    const QVariantMap configuration = boundToolObject->toolConfiguration;
    const QVariant channels = configuration.value(QStringLiteral("channels"));
    if (channels.type() != QVariant::List) {
        return;
    }
    const QVariantList elements = channels.toList();
    for (const QVariant& element : elements) {
        if (element.type() != QVariant::Map) {
            continue;
        }
        const QVariantMap entry = element.toMap();
        if (entry.value(QStringLiteral("visibility")).toString() != QLatin1String("public")) {
            continue;
        }
        const QSharedPointer<DGpioChannel> channel = DGpioChannel::create(entry);
        if (!channel.isNull()) {
            m_channelsModel.append(channel);
        }
    }
}

void BeMaintenanceToolGpio::updateChannelsValue()
{
    if (hasPendingTreatments()) {
        return;
    }
    for (int row = 0; row < m_channelsModel.length(); ++row) {
        const QSharedPointer<DGpioChannel> channel = getChannelAt(row);
        if (channel.isNull()) {
            errorReport(this, c_source, __LINE__)
                << "BeMaintenanceToolGpio::updateChannelsValue: channel is null at index" << row;
            continue;
        }
        queueRead(row, *channel);
    }
}

void BeMaintenanceToolGpio::clickedOnChannel(int channelIndex)
{
    const QSharedPointer<DGpioChannel> channel = getChannelAt(channelIndex);
    if (channel.isNull()) {
        errorReport(this, c_source, __LINE__)
            << "BeMaintenanceToolGpio::clickedOnChannel: channel is null at index" << channelIndex;
        return;
    }
    const bool current = channel->value().toBool();
    const QVariantMap parameters = {
        {QStringLiteral("channel"), channel->id()},
        {QStringLiteral("value"), !current},
        {QStringLiteral("state"), current ? QStringLiteral("OFF") : QStringLiteral("ON")},
    };
    if (!queueTreatment(channelIndex, QStringLiteral("setValue"), parameters)) {
        Q_EMIT delayingClickedOnChannel(channelIndex);
    }
}

bool BeMaintenanceToolGpio::applyTreatmentReply(int id, const QString& name, const QVariantMap& reply)
{
    const QSharedPointer<DGpioChannel> channel = getChannelAt(id);
    if (channel.isNull()) {
        errorReport(this, c_source, __LINE__)
            << "BeMaintenanceToolGpio::applyTreatmentReply: channel is null at index" << id;
        return false;
    }
    if (name != QLatin1String("getValue")) {
        return DAbstractPluginBackend::applyTreatmentReply(id, name, reply);
    }
    return channel->setValue(reply.value(QStringLiteral("value")));
}

void BeMaintenanceToolGpio::treatmentReleased(int id, const QString& name, bool success)
{
    if (!success || name != QLatin1String("setValue")) {
        return;
    }
    const QSharedPointer<DGpioChannel> channel = getChannelAt(id);
    if (!channel.isNull()) {
        queueRead(id, *channel);
    }
}

/// A refused read is lost: the next refresh makes up for it.
void BeMaintenanceToolGpio::queueRead(int row, const DGpioChannel& channel)
{
    queueTreatment(row, QStringLiteral("getValue"), {{QStringLiteral("channel"), channel.id()}});
}
