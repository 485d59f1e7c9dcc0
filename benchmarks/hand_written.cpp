#include "hand_written.h"

#include <QCoreApplication>
#include <QEvent>

namespace hand_written {

namespace {

class ReplyEvent : public QEvent
{
public:
    ReplyEvent(const QVariantMap& reply, Device::Reply taker)
        : QEvent(QEvent::User)
        , m_reply(reply)
        , m_taker(std::move(taker))
    {}

    void deliver() const { m_taker(m_reply); }

private:
    QVariantMap m_reply;
    Device::Reply m_taker;
};

} // namespace

Reading::Reading(const QVariantMap& arguments, QObject* parent)
    : QObject(parent)
    , m_arguments(arguments)
{}

QVariantMap Reading::request(const Links& links) const
{
    const QString link = links.value(m_arguments.value(QStringLiteral("channel")).toString());
    return link.isEmpty() ? QVariantMap() : QVariantMap{{QStringLiteral("channel"), link}};
}

bool Reading::take(const QVariantMap& reply)
{
    const auto value = reply.constFind(QStringLiteral("value"));
    if (value == reply.constEnd()) {
        return false;
    }
    m_results.insert(QStringLiteral("value"), static_cast<int>(static_cast<quint16>(value->toUInt())));
    return true;
}

Watch::Watch(bool risingEdges)
    : m_risingEdges(risingEdges)
{}

bool Watch::take(const QVariantMap& reply)
{
    const auto values = reply.constFind(QStringLiteral("values"));
    if (values == reply.constEnd()) {
        return false;
    }
    const QVariantList list = values->toList();
    if (list.size() != 1) {
        return false;
    }
    const int reading = list.first().toInt();
    const QVariant value = m_risingEdges ? QVariant(reading > m_last) : QVariant(reading);
    m_last = reading;
    m_results = {{QStringLiteral("value"), value}, {QStringLiteral("lastValue"), reading}};
    return true;
}

void Device::send(const QVariantMap& request, const Reply& reply)
{
    const int level = request.isEmpty() ? 0 : 1;
    QCoreApplication::postEvent(this, new ReplyEvent({{QStringLiteral("value"), level}}, reply));
}

void Device::change(int level, const Reply& reply)
{
    QCoreApplication::postEvent(this,
                                new ReplyEvent({{QStringLiteral("values"), QVariantList{level}}}, reply));
}

void Device::customEvent(QEvent* event)
{
    static_cast<const ReplyEvent*>(event)->deliver();
}

} // namespace hand_written
