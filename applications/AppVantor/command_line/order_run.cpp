#include "order_run.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>
#include <process/failure_status.h>
#include <process/time_text.h>

#include <algorithm>

OrderRun::OrderRun(DTool* tool, const std::vector<Invocation>& invocations)
    : m_tool(tool)
{
    for (const Invocation& invocation : invocations) {
        m_orders.push_back(std::make_unique<DOrder>(tool, invocation.command, invocation.arguments));
        connect(m_orders.back().get(), &DOrder::finished, this, &OrderRun::endWhenDone);
    }
}

OrderRun::~OrderRun() = default;

void OrderRun::start()
{
    for (const auto& order : m_orders) {
        order->start();
    }
}

int OrderRun::wait(std::optional<double> seconds)
{
    DScheduler* clock = m_tool->device()->scheduler();
    DScheduler::Appointment end;
    if (seconds) {
        m_stays = true;
        end = clock->at(clock->now() + static_cast<qint64>(*seconds * c_usPerSecond), [this] { stop(); });
    }
    QMetaObject::invokeMethod(this, &OrderRun::endWhenDone, Qt::QueuedConnection);
    m_loop.exec();
    clock->cancel(end);
    return exitStatus();
}

void OrderRun::stop()
{
    m_stays = false;
    for (const auto& order : m_orders) {
        order->stop();
    }
    endWhenDone();
}

void OrderRun::endWhenDone()
{
    const bool isOver = std::all_of(m_orders.cbegin(), m_orders.cend(), [](const auto& order) {
        return order->state() == DOrder::State::Finished;
    });
    if (isOver && (!m_stays || exitStatus() != ExitSuccess)) {
        m_loop.quit();
    }
}

int OrderRun::exitStatus() const
{
    int status = ExitSuccess;
    for (const auto& order : m_orders) {
        status = std::max(status, exitStatusOf(order->failure()));
    }
    return status;
}
