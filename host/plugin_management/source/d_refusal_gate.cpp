#include "d_refusal_gate.h"

#include "d_treatment_queue.h"

#include <QEvent>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>

namespace {
constexpr int c_patienceMs = 50;
constexpr int c_mostWaiting = 32;
} // namespace

DRefusalGate::DRefusalGate(QObject* caller, const DTreatmentQueue* queue)
    : QObject(caller)
    , m_queue(queue)
{
    caller->installEventFilter(this);
}

bool DRefusalGate::refuse()
{
    if (m_waiting >= c_mostWaiting) {
        return false;
    }
    m_sinceRefusal.start();
    return true;
}

bool DRefusalGate::hasRefused() const
{
    return m_sinceRefusal.isValid() && !m_sinceRefusal.hasExpired(c_patienceMs);
}

bool DRefusalGate::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::MetaCall || !hasRefused() || m_waiting >= c_mostWaiting) {
        return QObject::eventFilter(watched, event);
    }
    const QPointer<DRefusalGate> self(this);
    QEventLoop loop;
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    connect(m_queue, &DTreatmentQueue::released, &loop, &QEventLoop::quit);
    QTimer::singleShot(c_patienceMs, &loop, &QEventLoop::quit);
    ++m_waiting;
    loop.exec();
    if (self.isNull()) {
        return true; // the caller went meanwhile
    }
    --m_waiting;
    return false;
}
