#pragma once

#include "olm_d_gpio_channel.h"

#include <plugin_management/d_abstract_plugin_backend.h>

/// The object behind the maintenance panel: lists the tool's public channels, refreshes their values and
/// toggles the channel that the user clicks. Every treatment carries the row of its channel as its
/// identifier.
class BeMaintenanceToolGpio : public DAbstractPluginBackend
{
    Q_OBJECT
    Q_DISABLE_COPY(BeMaintenanceToolGpio)
    Q_PROPERTY(QString connectionPath READ connectionPath NOTIFY connectionPathChanged FINAL)
    Q_PROPERTY(QString version READ version NOTIFY versionChanged FINAL)
    Q_PROPERTY(OLM_DGpioChannel* channelsModel READ channelsModel NOTIFY channelsModelChanged FINAL)

public:
    explicit BeMaintenanceToolGpio(QObject* parent = nullptr);

    QString connectionPath() const;
    void setConnectionPath(const QString& path);
    QString version() const;
    void setVersion(const QString& version);
    OLM_DGpioChannel* channelsModel();

    /// The channel of a row; null when there is no such row.
    QSharedPointer<DGpioChannel> getChannelAt(int index);
    /// Appends the public channels of the bound tool's configuration to the model.
    void initBackend();

    /// Stores the value of a "getValue" reply in the channel of row id, and returns whether it suits it.
    bool applyTreatmentReply(int id, const QString& name, const QVariantMap& reply) override;
    /// After a write that succeeded, reads the channel of row id again.
    void treatmentReleased(int id, const QString& name, bool success) override;

Q_SIGNALS:
    void connectionPathChanged();
    void versionChanged();
    void channelsModelChanged();
    /// The host refused a click for now; it is tried again from the event loop.
    void delayingClickedOnChannel(int channelIndex);

public Q_SLOTS:
    /// Asks for the values of all channels, unless anything is still in flight.
    void updateChannelsValue();
    /// Writes the inverse of the channel's value.
    void clickedOnChannel(int channelIndex);

private:
    void queueRead(int row, const DGpioChannel& channel);

    QString m_connectionPath;
    QString m_version;
    OLM_DGpioChannel m_channelsModel;
};
