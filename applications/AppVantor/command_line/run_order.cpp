#include "run_order.h"

#include "invocation.h"
#include "order_report.h"
#include "order_status.h"
#include "progress.h"

#include "../bench/exit_status.h"
#include "../bench/unix_signals.h"

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>

#include <QEventLoop>
#include <QTimer>

int runOrder(DTool* tool, const Options& options, Output* output)
{
    QString problem;
    Invocation invocation = readInvocation(options.words, &problem);
    if (problem.isEmpty()) {
        problem = tool->checkInvocation(invocation.command, &invocation.arguments);
    }
    if (!problem.isEmpty()) {
        Output::diagnostic(problem);
        return ExitWrongUsage;
    }
    UnixSignals signals_;
    QEventLoop loop;
    DOrder order(tool, invocation.command, invocation.arguments);
    reportOrder(&order, 1, output);
    Progress progress(invocation, options.seconds, *output);

    // The bench stays for --for SECONDS, an order that listens until it is stopped, any other until its end.
    bool timeIsUp = !options.seconds;
    bool interrupted = false;
    const auto endWhenDone = [&] {
        if (order.state() == DOrder::State::Finished && (timeIsUp || interrupted || !order.isSuccessful())) {
            loop.quit();
        }
    };
    int events = 0;
    QObject::connect(&order, &DOrder::eventReceived, &loop, [&] {
        if (++events == options.count || output->hasFailed()) {
            timeIsUp = true;
            order.stop();
        }
    });
    QObject::connect(&order, &DOrder::finished, &loop, endWhenDone);
    QObject::connect(&signals_, &UnixSignals::interrupted, &loop, [&] {
        interrupted = true;
        order.stop();
        endWhenDone();
    });
    if (options.seconds) {
        QTimer::singleShot(static_cast<int>(*options.seconds * 1000.0), Qt::PreciseTimer, &loop, [&] {
            timeIsUp = true;
            order.stop();
            endWhenDone();
        });
    }
    QTimer::singleShot(0, &loop, [&order] { order.start(); });
    loop.exec();

    return exitStatusOf(order);
}
