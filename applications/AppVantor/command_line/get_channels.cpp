#include "get_channels.h"

#include "channel_value.h"
#include "failure_report.h"
#include "order_report.h"
#include "order_run.h"

#include <plugin_management/d_order.h>
#include <process/exit_status.h>

int getChannels(DTool* tool, const Options& options, Output* output)
{
    DWording problem;
    const QVector<DToolChannel> channels = findChannels(tool->channels(), options.words, &problem);
    if (!problem.isEmpty()) {
        reportFailure("usage", {problem}, output);
        return ExitWrongUsage;
    }
    OrderRun run(tool, forEach(channels, QStringLiteral("getValue")));
    run.start();
    const int status = run.wait();
    for (int i = 0; i < channels.size(); ++i) {
        reportOrder(run.orders().at(static_cast<std::size_t>(i)).get(), output, {},
                    levelReport(channels.at(i)));
    }
    return status;
}
