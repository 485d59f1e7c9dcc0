#include "answer.h"

Answer::Answer(const BrokerMessage& order, BrokerLink* link)
    : m_topic(order.responseTopic)
    , m_correlation(order.correlation)
    , m_link(link)
{}

void Answer::send(const Json& line) const
{
    if (m_topic.isEmpty()) {
        return;
    }
    BrokerMessage message;
    message.topic = m_topic;
    message.correlation = m_correlation;
    message.payload = QByteArray::fromStdString(lineOf(line));
    m_link->publish(message);
}

void Answer::refuse(const char* kind, const QString& reason) const
{
    send({{"type", "failure"}, {"kind", kind}, {"reason", toJson(reason)}});
}
