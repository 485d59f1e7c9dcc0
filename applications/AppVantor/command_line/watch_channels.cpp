#include "watch_channels.h"

#include "channel_value.h"
#include "failure_report.h"
#include "order_report.h"
#include "order_run.h"

#include <plugin_management/d_order.h>
#include <process/exit_status.h>
#include <process/time_text.h>
#include <process/unix_signals.h>

#include <utility>

namespace {

/// Listeners with an edge, whichever: without one, readings from 32768 on come as negative numbers.
std::vector<Invocation> listenersOf(const QVector<DToolChannel>& channels, const QString& edge)
{
    std::vector<Invocation> listeners = forEach(channels, QStringLiteral("startListening"));
    for (Invocation& listener : listeners) {
        listener.arguments.insert(QStringLiteral("edge"), edge == QLatin1String("falling")
                                                              ? QStringLiteral("FE")
                                                              : QStringLiteral("RE"));
    }
    return listeners;
}

int readingOf(const QVariantMap& event)
{
    return event.value(QStringLiteral("lastValue")).toInt();
}

/// Which readings of a channel are changes that are asked for.
class Changes
{
public:
    explicit Changes(const QString& edge)
        : m_rising(edge != QLatin1String("falling"))
        , m_falling(edge != QLatin1String("rising"))
    {}

    /// Takes the next reading.
    bool isOne(int level)
    {
        const std::optional<int> before = std::exchange(m_level, level);
        return before && ((m_rising && level > *before) || (m_falling && level < *before));
    }

private:
    bool m_rising;
    bool m_falling;
    std::optional<int> m_level;
};

/// Tells the changes of a channel, and counts them in seen, up to count.
ChannelReport changesOf(const DToolChannel& channel, const Options& options, qint64* seen)
{
    ChannelReport report;
    report.tells = [changes = Changes(options.edge), count = options.count,
                    seen](const QVariantMap& event) mutable {
        const bool isTold = changes.isOne(readingOf(event)) && *seen != count;
        *seen += isTold ? 1 : 0;
        return isTold;
    };
    report.eventText = [channel](const QVariantMap& event, qint64 wallClockUs) {
        return QStringLiteral("%1 %2=%3")
            .arg(timeOfDay(wallClockUs), channel.id, levelText(channel, readingOf(event)));
    };
    return report;
}

} // namespace

int watchChannels(DTool* tool, const Options& options, Output* output)
{
    DWording problem;
    const QVector<DToolChannel> channels = findChannels(tool->channels(), options.words, &problem);
    if (!problem.isEmpty()) {
        reportFailure("usage", {problem}, output);
        return ExitWrongUsage;
    }
    UnixSignals unixSignals;
    OrderRun run(tool, listenersOf(channels, options.edge));
    qint64 seen = 0;
    for (int i = 0; i < channels.size(); ++i) {
        DOrder* order = run.orders().at(static_cast<std::size_t>(i)).get();
        reportOrder(order, output, {}, changesOf(channels.at(i), options, &seen));
        QObject::connect(order, &DOrder::eventReceived, &run,
                         [run = &run, seen = &seen, count = options.count] {
                             if (*seen == count) {
                                 run->stop();
                             }
                         });
        QObject::connect(order, &DOrder::finished, &run, &OrderRun::stop); // one that fails ends all
    }
    bool isInterrupted = false;
    const auto interrupt = [&] {
        isInterrupted = true;
        run.stop();
    };
    QObject::connect(output, &Output::failed, &run, interrupt);
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &run, interrupt);
    run.start();
    const int status = run.wait(options.timeout);
    if (status != ExitSuccess || (options.count ? seen == *options.count : isInterrupted)) {
        return status;
    }
    if (!isInterrupted) {
        const QString wanted = options.count ? QStringLiteral(" of %1").arg(*options.count) : QString();
        reportFailure("timeIsUp", {QStringLiteral("the time is up: %1%2 changes seen").arg(seen).arg(wanted)},
                      output);
    }
    return ExitOrderFailed;
}
