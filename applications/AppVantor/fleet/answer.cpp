#include "answer.h"

Answer::Answer(const BrokerMessage& question, BrokerLink* link)
    : m_topic(question.responseTopic)
    , m_correlation(question.correlation)
    , m_link(link)
{}

void Answer::send(const QByteArray& payload) const
{
    if (!m_topic.isEmpty()) {
        m_link->publish({m_topic, payload, false, {}, m_correlation});
    }
}

void Answer::refuse(const char* kind, const QString& reason) const
{
    send(Json{{"type", "failure"}, {"kind", kind}, {"reason", toJson(reason)}});
}
