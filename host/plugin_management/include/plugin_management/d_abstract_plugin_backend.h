#pragma once

#include <plugin_management/d_tool.h>
#include <plugin_management/plugin_management_global.h>

#include <utilities/d_object.h>

#include <memory>

/// Base of the objects behind a plugin's QML page. It binds to the tool that the page names, and runs
/// treatments (orders of the tool's commands) one after another.
class PLUGIN_MANAGEMENT_EXPORT DAbstractPluginBackend : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DAbstractPluginBackend)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString objectId READ objectId WRITE setObjectId NOTIFY objectIdChanged)
    Q_PROPERTY(bool isConnected READ isConnected NOTIFY isConnectedChanged)

public:
    /// Makes the backend of a page of the plugin library pluginLib. It binds from the event loop, when the
    /// page has set its properties.
    DAbstractPluginBackend(const QString& pluginLib, QObject* parent);
    ~DAbstractPluginBackend() override;

    // The slots of the virtual table, in their fixed order.
    /// Receives the results of the treatment id, an order of the command name; answers whether it used them.
    /// The base uses none.
    virtual bool applyTreatmentReply(int id, const QString& name, const QVariantMap& reply);
    /// The treatment id is over, with its outcome. The base does nothing.
    virtual void treatmentReleased(int id, const QString& name, bool success);

    /// Queues an order of the tool's command name with these arguments: behind those that wait, but before
    /// those that only ask when it does more than that. Returns false while the queue is full, which holds
    /// 256 treatments that ask and as many that do something, or one for each channel of the tool when it has
    /// more. A caller that tries again from the event loop is held back there, for 50 ms at most. A treatment
    /// without a tool or with its device not connected is accepted and released with success false.
    bool queueTreatment(int id, const QString& name, const QVariantMap& parameters);
    /// True while a queued treatment has not been released.
    bool hasPendingTreatments() const;

    /// Name of the tool that the page is for.
    QString name() const;
    void setName(const QString& name);
    /// Identifier of the tool that the page is for.
    QString objectId() const;
    void setObjectId(const QString& objectId);
    /// True while there is a tool and its device is connected.
    bool isConnected() const;

Q_SIGNALS:
    /// The backend has finished its initialisation; the bound tool object is still null when there is no such
    /// tool. Emitted once more when the tool appears later. A tool that takes the place of the bound one must
    /// have the same configuration, or the backend stays without.
    void abstractBackendInitialized();
    void nameChanged();
    void objectIdChanged();
    void isConnectedChanged();
    /// A treatment is over: the order of the command name with these parameters ended with results, or for
    /// the reason of failure. treatmentReleased follows.
    void treatmentEnded(const QString& name, const QVariantMap& parameters, const QVariantMap& results,
                        const DFailure& failure);

protected:
    /// The tool that the backend is bound to; null while there is none.
    DTool* boundToolObject = nullptr;

private:
    void initialize();
    bool bind();
    void release(DTool* tool);
    void refreshConnected();

    struct Private;
    std::unique_ptr<Private> d;
};
