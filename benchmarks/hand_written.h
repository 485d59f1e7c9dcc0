#pragma once

#include <QHash>
#include <QObject>
#include <QSharedPointer>
#include <QVariant>

#include <functional>

/// The floor: what reading and watching a channel takes at the least, written by hand with Qt and without any
/// framework.
namespace hand_written {

/// Tool channels and the device channels that they are linked to.
using Links = QHash<QString, QString>;

/// One reading of one channel.
class Reading : public QObject
{
public:
    Reading(const QVariantMap& arguments, QObject* parent);

    /// Returns the request; empty when the channel is not linked.
    QVariantMap request(const Links& links) const;
    /// Takes the reply and stores the result; false when the reply is not right.
    bool take(const QVariantMap& reply);
    const QVariantMap& results() const { return m_results; }

private:
    QVariantMap m_arguments;
    QVariantMap m_results;
};

/// Watches a channel: every reading, or the rising edges.
class Watch
{
public:
    explicit Watch(bool risingEdges);

    /// Takes a reading and stores the result; false when the reply is not right.
    bool take(const QVariantMap& reply);
    const QVariantMap& results() const { return m_results; }

private:
    bool m_risingEdges;
    int m_last = 0;
    QVariantMap m_results;
};

/// A device that answers each request with an event in the event loop.
class Device : public QObject
{
public:
    using Reply = std::function<void(const QVariantMap&)>;

    /// Posts the reply to a request.
    void send(const QVariantMap& request, const Reply& reply);
    /// Posts a listening reply with a new level.
    void change(int level, const Reply& reply);

protected:
    void customEvent(QEvent* event) override;
};

} // namespace hand_written
