#include "set_channels.h"

#include "channel_value.h"
#include "driven_channels.h"
#include "failure_report.h"
#include "order_report.h"
#include "order_run.h"

#include <plugin_management/d_order.h>
#include <process/diagnostics.h>
#include <process/exit_status.h>
#include <process/unix_signals.h>

#include <QSet>

#include <algorithm>

namespace {

std::vector<Invocation> readSettings(const DTool& tool, const QStringList& words, DWording* problem)
{
    std::vector<Invocation> settings;
    QSet<QString> channels;
    for (const QString& word : words) {
        settings.push_back(readSetting(tool.channels(), word, problem));
        if (!problem->isEmpty()) {
            return {};
        }
        const QString channel = DrivenChannels::channelOf(settings.back());
        if (channels.contains(channel)) {
            *problem = wording(R"(channel "%1" is set twice)").arg(channel);
            return {};
        }
        channels.insert(channel);
    }
    return settings;
}

void start(OrderRun* run, Output* output)
{
    run->start();
    for (const auto& order : run->orders()) {
        reportOrder(order.get(), output, {}, ChannelReport());
    }
}

/// Nothing blinks without the bench.
void tellWhatBlinksNoMore(const DTool& tool, const std::vector<Invocation>& settings)
{
    DrivenChannels driven(tool);
    for (const Invocation& setting : settings) {
        driven.note(setting);
    }
    const QStringList blinking = driven.blinking();
    for (const QString& channel : blinking) {
        diagnostic(QStringLiteral("%1 blinks no more: that ends with \"set\"; --for SECONDS keeps it going")
                       .arg(channel));
    }
}

} // namespace

int setChannels(DTool* tool, const Options& options, Output* output)
{
    DWording problem;
    const std::vector<Invocation> settings = readSettings(*tool, options.words, &problem);
    if (!problem.isEmpty()) {
        reportFailure("usage", {problem}, output);
        return ExitWrongUsage;
    }
    UnixSignals unixSignals;
    OrderRun run(tool, settings);
    QObject::connect(output, &Output::failed, &run, &OrderRun::stop);
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &run, &OrderRun::stop);
    start(&run, output);
    const int status = run.wait(options.seconds);
    if (status == ExitSuccess && !options.seconds) {
        tellWhatBlinksNoMore(*tool, settings);
    }
    return status;
}

int switchOff(const std::vector<DTool*>& tools, Output* output)
{
    int status = ExitSuccess;
    for (DTool* tool : tools) {
        OrderRun run(tool, switchingOff(tool->channels()));
        start(&run, output);
        status = std::max(status, run.wait());
    }
    return status;
}
