// The plugin's part of an order and of a listening event, on a host that does next to nothing.

#include "d_cmd_getValue.h"
#include "d_cmd_listenEvents.h"
#include "hand_written.h"
#include "paths.h"
#include "thin_host.h"

#include <memory>

namespace {

const QVariantMap c_arguments = {{QStringLiteral("channel"), QStringLiteral("START")}};
const QVariantMap c_reply = {{QStringLiteral("value"), 1}};

/// Listening replies with the levels 0 and 1 by turns.
const QVariantMap& nextReading()
{
    static const QVariantMap readings[] = {{{QStringLiteral("values"), QVariantList{0}}},
                                           {{QStringLiteral("values"), QVariantList{1}}}};
    static unsigned turn = 0;
    return readings[++turn % 2];
}

std::function<void()> handWrittenOrder()
{
    return [links = hand_written::Links{{QStringLiteral("START"), QStringLiteral("line0")}},
            tool = std::make_shared<QObject>()] {
        const QSharedPointer<hand_written::Reading> reading(
            new hand_written::Reading(c_arguments, tool.get()));
        thinHost.request = reading->request(links);
        if (!reading->take(c_reply)) {
            std::abort();
        }
    };
}

std::function<void()> pluginOrder()
{
    thinHost.links = {{QStringLiteral("START"), QStringLiteral("line0")}};
    auto tool = std::make_shared<QObject>();
    auto* prototype = new DCmdGetValue(tool.get());
    return [tool, prototype] {
        thinHost.results.clear();
        const QSharedPointer<ICommand> command = prototype->createCommand(c_arguments);
        if (!command->commandExecute() || !command->setReply(1, c_reply)) {
            std::abort();
        }
    };
}

std::function<void()> handWrittenEvent(bool risingEdges)
{
    return [watch = std::make_shared<hand_written::Watch>(risingEdges)] {
        if (!watch->take(nextReading())) {
            std::abort();
        }
    };
}

std::function<void()> pluginEvent(const QString& edge)
{
    const auto command = std::make_shared<DCmdListenEvents>(
        QVariantMap{{QStringLiteral("channel"), QStringLiteral("START")}, {QStringLiteral("edge"), edge}},
        nullptr);
    command->commandExecute();
    return [command] {
        if (!command->setReply(1, nextReading())) {
            std::abort();
        }
    };
}

} // namespace

int main(int argc, char** argv)
{
    return runPaths(argc, argv,
                    {{"order_plugin/floor", handWrittenOrder},
                     {"order_plugin/ours", pluginOrder},
                     {"event_plugin/floor", [] { return handWrittenEvent(false); }},
                     {"event_plugin/ours", [] { return pluginEvent(QString()); }},
                     {"edge_plugin/floor", [] { return handWrittenEvent(true); }},
                     {"edge_plugin/ours", [] { return pluginEvent(QStringLiteral("RE")); }}});
}
