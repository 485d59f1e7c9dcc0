#pragma once

#include <devices/broker_link.h>
#include <devices/line.h>
#include <devices/rig_topics.h>
#include <plugin_management/d_scheduler.h>

#include <QObject>
#include <QVector>

#include <deque>
#include <vector>

/// Keeps the present level of each line on the broker, for those who come later; of a line that changes fast,
/// some 20 a second.
class LevelFeed : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(LevelFeed)

public:
    /// link and scheduler must outlive this.
    LevelFeed(const QVector<DLine>& lines, const RigTopics& topics, const QString& session, BrokerLink* link,
              DScheduler* scheduler);
    ~LevelFeed() override;

    /// A line has this level by the change called number.
    void setLevel(int line, const LineLevel& level, quint64 number);
    /// The broker is to have the levels of all lines anew.
    void tellAll();
    /// Tells what waits at once, as far as the broker takes it.
    void flush();

private:
    struct Told
    {
        QByteArray topic;
        LineLevel level;
        quint64 number = 0;
        bool isWaiting = false;
    };

    void queue(int line);
    void flushLater();
    QByteArray payloadOf(const Told& line) const;

    const QString m_session;
    BrokerLink* const m_link;
    DScheduler* const m_scheduler;
    std::vector<Told> m_lines;
    std::deque<int> m_waiting; ///< lines whose level is to be told, each once
    DScheduler::Appointment m_flush;
};
