#include "rig_lease.h"

#include <process/time_text.h>

#include <utility>

RigLease::RigLease(DScheduler* scheduler)
    : m_scheduler(scheduler)
{}

RigLease::~RigLease()
{
    m_scheduler->cancel(m_end);
}

QString RigLease::take(const QString& holder, double minutes)
{
    constexpr double usPerMinute = 60e6;
    QString refusal = refusalOf(holder);
    if (refusal.isEmpty()) {
        m_scheduler->cancel(m_end);
        m_holder = holder;
        m_untilUs = m_scheduler->now() + static_cast<qint64>(minutes * usPerMinute);
        m_end = m_scheduler->at(m_untilUs, [this] { end(); });
        Q_EMIT changed();
    }
    return refusal;
}

QString RigLease::release(const QString& holder)
{
    if (m_holder.isEmpty()) {
        return QStringLiteral("nobody holds the rig");
    }
    QString refusal = refusalOf(holder);
    if (refusal.isEmpty()) {
        end();
    }
    return refusal;
}

QString RigLease::refusalOf(const QString& somebody) const
{
    return m_holder.isEmpty() || m_holder == somebody
               ? QString()
               : QStringLiteral("%1 holds the rig until %2")
                     .arg(m_holder, fullTime(m_scheduler->wallClock(m_untilUs)));
}

Json RigLease::toJson() const
{
    Json json = {{"holder", m_holder.isEmpty() ? Json() : ::toJson(m_holder)}};
    if (!m_holder.isEmpty()) {
        json["until"] = m_scheduler->wallClock(m_untilUs);
    }
    return json;
}

void RigLease::end()
{
    m_scheduler->cancel(std::exchange(m_end, {}));
    m_holder.clear();
    Q_EMIT changed();
}
