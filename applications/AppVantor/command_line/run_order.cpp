#include "run_order.h"

#include "failure_report.h"
#include "invocation.h"
#include "order_report.h"
#include "progress.h"

#include <plugin_management/d_device.h>
#include <plugin_management/d_order.h>
#include <plugin_management/d_scheduler.h>
#include <plugin_management/d_tool.h>
#include <process/failure_status.h>
#include <process/unix_signals.h>

#include <QEventLoop>

namespace {
constexpr double c_usPerSecond = 1000000.0;
}

int runOrder(DTool* tool, const Options& options, Output* output)
{
    QString problem;
    const Invocation invocation = readInvocation(options.words, &problem);
    if (!problem.isEmpty()) {
        reportFailure("syntax", {problem}, output);
        return ExitWrongUsage;
    }
    UnixSignals unixSignals;
    QEventLoop loop;
    DOrder order(tool, invocation.command, invocation.arguments);
    order.start();
    if (order.failure().kind == DFailure::Kind::WrongInvocation) {
        reportRefusal(order, output);
        return ExitWrongUsage;
    }
    reportOrder(&order, 1, output);
    const Progress progress(invocation, options.seconds, *output);

    // The bench stays for --for SECONDS, an order that listens until it is stopped, any other until its end.
    bool timeIsUp = !options.seconds;
    const auto endWhenDone = [&] {
        if (order.state() == DOrder::State::Finished && (timeIsUp || !order.isSuccessful())) {
            loop.quit();
        }
    };
    const auto stop = [&] {
        timeIsUp = true;
        order.stop();
        endWhenDone();
    };
    int events = 0;
    QObject::connect(&order, &DOrder::eventReceived, &loop, [&] {
        if (++events == options.count) {
            stop();
        }
    });
    QObject::connect(&order, &DOrder::finished, &loop, endWhenDone);
    QObject::connect(output, &Output::failed, &loop, stop);
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &loop, stop);
    DScheduler* clock = tool->device()->scheduler();
    DScheduler::Appointment end;
    if (options.seconds) {
        end = clock->at(clock->now() + static_cast<qint64>(*options.seconds * c_usPerSecond), stop);
    }
    QMetaObject::invokeMethod(&loop, endWhenDone, Qt::QueuedConnection);
    loop.exec();
    clock->cancel(end);
    return exitStatusOf(order.failure());
}
