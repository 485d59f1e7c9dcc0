#include "run_order.h"

#include "failure_report.h"
#include "order_report.h"
#include "order_run.h"
#include "progress.h"

#include <plugin_management/d_order.h>
#include <plugin_management/d_tool.h>
#include <process/exit_status.h>
#include <process/unix_signals.h>

#include <algorithm>

namespace {

/// With an edge, an event tells whether that was seen; one that was not, the first reading for example, does
/// not count.
bool counts(const QVariantMap& event)
{
    const QVariant value = event.value(QStringLiteral("value"));
    return value.type() != QVariant::Bool || value.toBool();
}

bool canOrder(const DTool& tool, const QString& command)
{
    const QVector<DCommandDescription> known = tool.orderables();
    return std::any_of(known.cbegin(), known.cend(),
                       [&command](const DCommandDescription& one) { return one.name == command; });
}

} // namespace

int runOrder(DTool* tool, const Options& options, Output* output)
{
    DWording problem;
    const Invocation invocation = readInvocation(options.words, &problem);
    if (!problem.isEmpty() && canOrder(*tool, invocation.command)) { // else it is refused for its name, below
        reportFailure("syntax", {problem}, output);
        return ExitWrongUsage;
    }
    UnixSignals unixSignals;
    OrderRun run(tool, {invocation});
    DOrder* order = run.orders().front().get();
    run.start();
    if (order->failure().kind == DFailure::Kind::WrongInvocation) {
        reportRefusal(*order, output);
        return ExitWrongUsage;
    }
    reportOrder(order, output);
    const Progress progress(invocation, options.seconds, *output);
    const auto stopAfterCount = [run = &run, events = 0,
                                 count = options.count](const QVariantMap& event) mutable {
        if (counts(event) && events < count && ++events == count) {
            run->stop();
        }
    };
    QObject::connect(order, &DOrder::eventReceived, &run, stopAfterCount);
    QObject::connect(output, &Output::failed, &run, &OrderRun::stop);
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &run, &OrderRun::stop);
    return run.wait(options.seconds);
}
