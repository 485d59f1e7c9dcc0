#pragma once

#include <manual_scheduler.h>

#include <devices/simulated_board.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <QVariant>

#include <functional>
#include <memory>
#include <vector>

/// The plugin, loaded from its library, on a simulated board: works off orders and events, and says what did
/// not go as it must.
class SoakBench : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(SoakBench)

public:
    /// The board itself lives in place. A plugin that cannot be loaded ends the process.
    explicit SoakBench(DevicePlace place);
    ~SoakBench() override;

    /// Runs so many orders of all six commands to their ends, some at a time.
    void runOrders(qint64 count);
    /// Changes inputs that many orders listen to, until these have heard of so many events.
    void runEvents(qint64 count);
    /// Unplugs the board, whose levels nobody knows then, and plugs it in again.
    void replug();
    /// Events that runEvents has heard of.
    qint64 events() const { return m_heard; }
    /// Error reports that the orders have provoked.
    qint64 provokedReports() const { return m_provoked; }

    /// What went wrong first; empty while all is well.
    QString problem() const { return m_problem; }

private:
    struct Invocation
    {
        QString command;
        QVariantMap arguments;
        bool listens = false;
        bool succeeds = true;
        int reports = 0;
    };

    static std::vector<Invocation> invocations();
    std::unique_ptr<DOrder> start(const Invocation& invocation);
    void require(bool holds, const QString& what);
    /// Runs the event loop until something has come about; too long a time is a problem.
    void await(const std::function<bool()>& cameAbout, const QString& what);

    ManualScheduler m_scheduler;
    std::unique_ptr<LineDevice> m_board;
    std::unique_ptr<DTool> m_tool;
    const std::vector<Invocation> m_invocations;
    std::size_t m_next = 0;
    std::vector<int> m_inputs; ///< levels
    qint64 m_provoked = 0;
    qint64 m_events = 0;
    qint64 m_heard = 0;
    QString m_problem;
};
