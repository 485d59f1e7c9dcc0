#pragma once

#include <devices/broker_link.h>
#include <plugin_management/d_failure.h>
#include <process/json_line.h>

/// The way back to who sent an order, or a question.
class Answer
{
public:
    /// To who sent question, over link, which must outlive this.
    Answer(const BrokerMessage& question, BrokerLink* link);

    /// Sends a message of the answer. With nobody to answer to, nothing is sent.
    void send(const Json& line) const { send(QByteArray::fromStdString(lineOf(line))); }
    void send(const QByteArray& payload) const;
    /// Sends that nothing came of it: the only line, which belongs to no order.
    void refuse(const char* kind, const QString& reason) const;
    const QByteArray& topic() const { return m_topic; }
    /// False while events are to be left out.
    bool hasRoom() const { return m_link->hasRoom(); }

private:
    QByteArray m_topic;
    QByteArray m_correlation;
    BrokerLink* m_link;
};
