#pragma once

#include <devices/broker_link.h>
#include <devices/line_engine.h>
#include <devices/rig_changes.h>
#include <devices/rig_device.h>
#include <devices/rig_topics.h>

#include <QJsonObject>
#include <QSet>

#include <functional>
#include <map>

/// The lines of a rig on a broker.
class RigDevice : public LineEngine
{
public:
    /// scheduler and listener must outlive the device.
    RigDevice(const RigDeviceSetup& setup, DScheduler* scheduler, LineListener* listener);
    ~RigDevice() override;
    Q_DISABLE_COPY(RigDevice)

    void open() override;
    void close() override;
    void request(quint64 id, const QString& instruction, const QVariantMap& arguments) override;
    void cancel(quint64 id) override;
    /// A message from the broker.
    void take(const BrokerMessage& message);

protected:
    DFailure drive(int line, int level, qint64 timeUs) override;

private:
    void linkMade();
    void linkLost(const DWording& problem);
    void lose(const DWording& problem);
    void loseAfter(qint64 patienceUs, const DWording& problem);
    void takeState(const RigState& state);
    void takeDescription(const QByteArray& payload);
    void takeEvents(const RigChanges& events);
    void takeHistory(const RigChanges& history);
    void takeAnswer(quint64 id, const QJsonObject& answer);
    void withdraw(quint64 id);
    void catchUp();
    void askLevels();
    void ask(quint64 from, const QByteArray& correlation);
    void setCurrent();
    void apply(const RigChanges& changes);
    void settleLines();
    void setLevelOf(const RigChange& change);
    void tellLost(quint64 end);
    qint64 steadyTime(qint64 wallClockUs) const;

    const RigDeviceSetup m_setup;
    const RigTopics m_topics;
    const QByteArray m_client;
    std::unique_ptr<BrokerLink> m_link; ///< null while the device is closed
    QHash<int, int> m_lineNumbers;      ///< of this device, by the index that the rig gives a line
    bool m_isDescribed = false;
    bool m_isOnline = false;
    QString m_session;
    quint64 m_next = 0;                               ///< number of the next change; 0 while none is known
    bool m_isCurrent = false;                         ///< false while changes are missing
    QSet<int> m_unsettled;                            ///< lines that lost changes may have left elsewhere
    quint64 m_lossEnd = 0;                            ///< number of the first change after those
    std::optional<RigChanges> m_levelsAfterLoss;      ///< of all lines, until the changes before are known
    QHash<quint64, QString> m_requests;               ///< channels of those that wait for their answer
    std::map<quint64, std::function<void()>> m_early; ///< requests that wait for the first connection
    DScheduler::Appointment m_patience;               ///< after which the device is unreachable
    DWording m_impatience;                            ///< why it is, then
};
