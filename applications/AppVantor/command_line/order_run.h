#pragma once

#include "invocation.h"

#include <QEventLoop>

#include <memory>
#include <optional>
#include <vector>

class DOrder;
class DTool;

/// Orders of one tool that run side by side, and are waited for together.
class OrderRun : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(OrderRun)

public:
    /// Prepares the orders; nothing runs before start().
    OrderRun(DTool* tool, const std::vector<Invocation>& invocations);
    /// Orders that still run are stopped silently.
    ~OrderRun() override;

    /// The orders, as they were given.
    const std::vector<std::unique_ptr<DOrder>>& orders() const { return m_orders; }

    void start();
    /// Waits until all orders have ended. With seconds it waits that long in any case, and then stops what
    /// still runs; an order that fails ends that wait. Returns the worst exit status.
    int wait(std::optional<double> seconds = std::nullopt);
    /// Stops what still runs, and ends the wait.
    void stop();

private:
    void endWhenDone();
    /// The worst of the orders that have ended.
    int exitStatus() const;

    DTool* m_tool;
    std::vector<std::unique_ptr<DOrder>> m_orders;
    QEventLoop m_loop;
    bool m_stays = false; ///< until the time is up, whatever has ended
};
