#pragma once

#include <plugin_management/d_bound_tool.h>

#include <utilities/d_object.h>

#include <QVariant>

#include <memory>

struct BackendRecord;

/// Base of the objects behind a plugin's page. It writes down what the backend asks of it in its
/// BackendRecord, and answers what the record says.
class Q_DECL_EXPORT DAbstractPluginBackend : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DAbstractPluginBackend)
    Q_PROPERTY(QString name MEMBER m_name NOTIFY nameChanged)
    Q_PROPERTY(QString objectId MEMBER m_objectId NOTIFY objectIdChanged)
    Q_PROPERTY(bool isConnected MEMBER m_connected NOTIFY isConnectedChanged)

protected:
    DAbstractPluginBackend(const QString& pluginLib, QObject* parent);

public:
    ~DAbstractPluginBackend() override;

    virtual bool applyTreatmentReply(int id, const QString& name, const QVariantMap& reply);
    virtual void treatmentReleased(int id, const QString& name, bool success);

Q_SIGNALS:
    void abstractBackendInitialized();
    void nameChanged();
    void objectIdChanged();
    void isConnectedChanged();

protected:
    bool queueTreatment(int id, const QString& name, const QVariantMap& parameters);
    bool hasPendingTreatments() const;

    DBoundTool* boundToolObject = nullptr;

private:
    friend BackendRecord& recordOf(const DAbstractPluginBackend& backend);
    friend void initialise(DAbstractPluginBackend& backend, DBoundTool* tool);

    QString m_name;
    QString m_objectId;
    bool m_connected = false;
    std::unique_ptr<BackendRecord> m_record;
};
