#include "level_feed.h"

#include <process/json_line.h>

#include <utility>

namespace {
constexpr qint64 c_pauseUs = 50000;
}

LevelFeed::LevelFeed(const QVector<DLine>& lines, const RigTopics& topics, const QString& session,
                     BrokerLink* link, DScheduler* scheduler)
    : m_session(session)
    , m_link(link)
    , m_scheduler(scheduler)
{
    for (const DLine& line : lines) {
        Told told;
        told.topic = topics.line(line.name);
        m_lines.push_back(told);
    }
    connect(link, &BrokerLink::freeAgain, this, [this] {
        if (m_flush == DScheduler::Appointment()) { // what is waiting has had its pause
            flush();
        }
    });
}

LevelFeed::~LevelFeed()
{
    m_scheduler->cancel(m_flush);
}

void LevelFeed::setLevel(int line, const LineLevel& level, quint64 number)
{
    Told& told = m_lines.at(static_cast<std::size_t>(line));
    told.level = level;
    told.number = number;
    queue(line);
}

void LevelFeed::tellAll()
{
    for (std::size_t line = 0; line < m_lines.size(); ++line) {
        queue(static_cast<int>(line));
    }
}

void LevelFeed::queue(int line)
{
    if (!std::exchange(m_lines.at(static_cast<std::size_t>(line)).isWaiting, true)) {
        m_waiting.push_back(line);
    }
    flushLater();
}

void LevelFeed::flushLater()
{
    if (!m_waiting.empty() && m_flush == DScheduler::Appointment()) {
        m_flush = m_scheduler->at(m_scheduler->now() + c_pauseUs, [this] { flush(); });
    }
}

void LevelFeed::flush()
{
    m_scheduler->cancel(std::exchange(m_flush, {}));
    while (!m_waiting.empty() && m_link->isFree()) {
        Told& line = m_lines.at(static_cast<std::size_t>(m_waiting.front()));
        m_waiting.pop_front();
        line.isWaiting = false;
        m_link->publish({line.topic, payloadOf(line), true});
    }
}

QByteArray LevelFeed::payloadOf(const Told& line) const
{
    const Json json = {{"v", line.level.known ? Json(line.level.level) : Json()},
                       {"t", m_scheduler->wallClock(line.level.sinceUs)},
                       {"seq", line.number},
                       {"session", toJson(m_session)},
                       {"quality", line.level.known ? "good" : "unknown"}};
    return QByteArray::fromStdString(lineOf(json));
}
