#include "d_treatment_queue.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <utility>

DTreatmentQueue::DTreatmentQueue(QObject* parent)
    : QObject(parent)
{}

bool DTreatmentQueue::append(int id, const QString& name, const QVariantMap& parameters, int limit)
{
    const bool question = asks(name);
    auto& waiting = question ? m_questions : m_actions;
    const int running = m_running && m_running->asks == question ? 1 : 0;
    if (static_cast<int>(waiting.size()) + running >= limit) {
        return false;
    }
    waiting.push_back({id, name, parameters, question});
    runNextLater();
    return true;
}

int DTreatmentQueue::size() const
{
    return static_cast<int>(m_actions.size() + m_questions.size()) + (m_running ? 1 : 0);
}

void DTreatmentQueue::setTool(DTool* tool)
{
    m_tool = tool;
}

bool DTreatmentQueue::asks(const QString& name) const
{
    return !m_tool.isNull() && m_tool->asks(name);
}

void DTreatmentQueue::runNextLater()
{
    if (!m_busy && size() > 0) {
        m_busy = true;
        QMetaObject::invokeMethod(this, &DTreatmentQueue::runNext, Qt::QueuedConnection);
    }
}

void DTreatmentQueue::runNext()
{
    auto& waiting = m_actions.empty() ? m_questions : m_actions;
    m_running = std::move(waiting.front());
    waiting.pop_front();
    const DDevice* device = m_tool.isNull() ? nullptr : m_tool->device();
    if (device == nullptr || !device->isConnected()) {
        release({}, {DFailure::Kind::DeviceUnreachable, wording("the device is not connected")});
        return;
    }
    auto* order = new DOrder(m_tool, m_running->name, m_running->parameters, this);
    connect(order, &DOrder::finished, this, [this, order] {
        order->deleteLater();
        release(order->results(), order->failure());
    });
    order->start();
}

/// The treatment counts until its results were used, and the next waits as long, even where an event loop
/// runs in between.
void DTreatmentQueue::release(const QVariantMap& results, const DFailure& failure)
{
    const Treatment treatment = *m_running;
    const QPointer<DTreatmentQueue> self(this);
    if (!failure) {
        Q_EMIT replied(treatment.id, treatment.name, results);
        if (self.isNull()) {
            return;
        }
    }
    m_running.reset();
    m_busy = false;
    runNextLater();
    Q_EMIT ended(treatment.name, treatment.parameters, results, failure);
    if (!self.isNull()) {
        Q_EMIT released(treatment.id, treatment.name, !failure);
    }
}
