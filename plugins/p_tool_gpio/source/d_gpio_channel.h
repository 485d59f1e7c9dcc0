#pragma once

#include <utilities/d_object.h>

#include <QMap>
#include <QSharedPointer>
#include <QVariant>

/// One input or output pin as the maintenance panel shows it.
class DGpioChannel : public DObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DGpioChannel)
    Q_PROPERTY(QString id READ id NOTIFY idChanged FINAL)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged FINAL)
    Q_PROPERTY(QString label READ label NOTIFY labelChanged FINAL)
    Q_PROPERTY(QVariant value READ value NOTIFY valueChanged FINAL)
    Q_PROPERTY(EnChannelType type READ type NOTIFY typeChanged FINAL)

public:
    /// Any number may stand in it, as no setter looks at its range.
    enum EnChannelType : int
    {
        CeCtUnknown = 0,
        CeCtAnaIn = 1,
        CeCtAnaOut = 2,
        CeCtBinIn = 3,
        CeCtBinOut = 4,
        _CeCtNbr = 5, // NOLINT(clang-diagnostic-reserved-identifier): a count, named as all are
    };
    Q_ENUM(EnChannelType)

    /// The configuration's names of the channel types.
    static const QMap<QString, EnChannelType> c_channelTypesMap;

    explicit DGpioChannel(QObject* parent = nullptr);
    ~DGpioChannel() override;

    /// Builds a channel from its configuration entry: "id", "name" (cut to 64 characters) and the list of
    /// sub-entries "value", among which "type" names the channel type. Null for an entry without keys.
    static QSharedPointer<DGpioChannel> create(const QMap<QString, QVariant>& entry);

    QString id() const;
    QString name() const;
    QString label() const;
    /// The last value known; invalid while there is none.
    QVariant value() const;
    EnChannelType type() const;
    /// Every sub-entry of the configuration entry.
    QVariantMap parameters() const;

    void setId(const QString& id);
    void setName(const QString& name);
    void setLabel(const QString& label);
    void setType(EnChannelType type);
    /// Stores value and returns whether it suits the channel type, which is a hint only.
    bool setValue(const QVariant& value);

Q_SIGNALS:
    void idChanged();
    void nameChanged();
    void labelChanged();
    void valueChanged();
    void typeChanged();
    /// For listeners of this class; nothing here emits it.
    void sigSwitchChannelValue(const QString& channelId);

public:
    /// True for a binary input, the one kind that the user switches.
    Q_INVOKABLE bool isSwitchable();

private:
    void addParameter(const QVariantMap& subEntry);

    QString m_id;
    QString m_name;
    QString m_label;
    QVariant m_value;
    EnChannelType m_type = CeCtUnknown;
    QVariantMap m_parameters;
};
