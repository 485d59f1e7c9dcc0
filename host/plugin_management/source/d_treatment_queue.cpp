#include "d_treatment_queue.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

DTreatmentQueue::DTreatmentQueue(QObject* parent)
    : QObject(parent)
{}

void DTreatmentQueue::append(int id, const QString& name, const QVariantMap& parameters)
{
    m_treatments.push_back({id, name, parameters});
    runNextLater();
}

int DTreatmentQueue::size() const
{
    return static_cast<int>(m_treatments.size());
}

void DTreatmentQueue::setTool(DTool* tool)
{
    m_tool = tool;
}

void DTreatmentQueue::runNextLater()
{
    if (!m_busy && !m_treatments.empty()) {
        m_busy = true;
        QMetaObject::invokeMethod(this, &DTreatmentQueue::runNext, Qt::QueuedConnection);
    }
}

void DTreatmentQueue::runNext()
{
    const DDevice* device = m_tool.isNull() ? nullptr : m_tool->device();
    if (device == nullptr || !device->isConnected()) {
        release(false, {});
        return;
    }
    const Treatment& treatment = m_treatments.front();
    auto* order = new DOrder(m_tool, treatment.name, treatment.parameters, this);
    connect(order, &DOrder::finished, this, [this, order](bool success) {
        order->deleteLater();
        release(success, order->results());
    });
    order->start();
}

/// The treatment counts until its results were used, and the next waits as long, even where an event loop
/// runs in between.
void DTreatmentQueue::release(bool success, const QVariantMap& results)
{
    const Treatment treatment = m_treatments.front();
    if (success) {
        const QPointer<DTreatmentQueue> self(this);
        Q_EMIT replied(treatment.id, treatment.name, results);
        if (self.isNull()) {
            return;
        }
    }
    m_treatments.pop_front();
    m_busy = false;
    runNextLater();
    Q_EMIT released(treatment.id, treatment.name, success);
}
