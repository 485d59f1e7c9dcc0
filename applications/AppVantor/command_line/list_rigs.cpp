#include "list_rigs.h"

#include "broker_options.h"
#include "failure_report.h"
#include "table.h"

#include <configuration/json_text.h>
#include <devices/broker_link.h>
#include <devices/rig_changes.h>
#include <devices/rig_topics.h>
#include <process/absence.h>
#include <process/exit_status.h>
#include <process/time_text.h>
#include <process/unix_signals.h>

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QUuid>

namespace {

struct Rig
{
    RigState state;
    int lines = 0;
    RigHolder holder;
};

QString sinceOf(const Rig& rig)
{
    return rig.state.sinceUs > 0 ? fullTime(rig.state.sinceUs) : QString();
}

Json rigJson(const QString& name, const Rig& rig)
{
    Json json = {{"type", "rig"},
                 {"rig", toJson(name)},
                 {"state", toJson(rig.state.state)},
                 {"since", toJson(sinceOf(rig))},
                 {"lines", rig.lines},
                 {"holder", rig.holder.name.isEmpty() ? Json() : toJson(rig.holder.name)}};
    if (!rig.holder.name.isEmpty()) {
        json["until"] = toJson(fullTime(rig.holder.untilUs));
    }
    return json;
}

/// What is heard of the rigs.
class Rigs
{
public:
    /// Takes a message. Returns the name of the rig that something else is known of now; a broker that was
    /// away tells all anew.
    QString take(const BrokerMessage& message)
    {
        const QString name = RigTopics::rigOf(message.topic);
        Rig& rig = m_rigs[name];
        const Json before = rigJson(name, rig);
        if (message.topic.endsWith("/state")) {
            rig.state = RigState::fromJson(message.payload).value_or(RigState());
        } else if (message.topic.endsWith("/description")) {
            const QJsonObject description = QJsonDocument::fromJson(message.payload).object();
            rig.lines = description.value(QStringLiteral("lines")).toArray().size();
        } else {
            rig.holder = RigHolder::fromJson(message.payload);
        }
        return rig.state.state.isEmpty() || rigJson(name, rig) == before ? QString() : name;
    }

    void write(Output* output) const
    {
        Table table({16, 8, 33, 6});
        table.add({QStringLiteral("RIG"), QStringLiteral("STATE"), QStringLiteral("SINCE"),
                   QStringLiteral("LINES"), QStringLiteral("HELD BY")});
        for (auto rig = m_rigs.cbegin(); rig != m_rigs.cend(); ++rig) {
            if (rig->state.state.isEmpty()) {
                continue;
            }
            output->json([&] { return rigJson(rig.key(), *rig); });
            table.add(
                {rig.key(), rig->state.state, sinceOf(*rig), QString::number(rig->lines), rig->holder.name});
        }
        output->text(table.text());
    }

    void write(const QString& name, Output* output) const
    {
        const Rig rig = m_rigs.value(name);
        output->write([&] { return rigJson(name, rig); },
                      [&] {
                          const QString& holder = rig.holder.name;
                          const QString held =
                              holder.isEmpty() ? QString() : QStringLiteral(", held by ") + holder;
                          return inOneLine(QStringLiteral("%1 %2%3").arg(name, rig.state.state, held));
                      });
    }

private:
    QMap<QString, Rig> m_rigs;
};

} // namespace

int listRigs(const Options& options, Output* output)
{
    constexpr int quietMs = 300;
    constexpr int longestMs = 3000;
    DWording problem;
    const std::optional<BrokerPlace> place = brokerOf(options, &problem);
    if (!place) {
        reportFailure("usage", {problem}, output);
        return ExitWrongUsage;
    }
    BrokerLink link(place->address, place->access,
                    "appvantor-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces));
    for (const char* topic : {"state", "description", "lease"}) {
        link.subscribe(RigTopics::ofAnyRig(topic));
    }
    QEventLoop loop;
    Rigs rigs;
    QTimer quiet; // nobody says when all that is kept has come
    quiet.setSingleShot(true);
    quiet.setInterval(quietMs);
    int status = ExitSuccess;
    bool isListed = false;
    const UnixSignals unixSignals;
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &loop, &QEventLoop::quit);
    QObject::connect(output, &Output::failed, &loop, &QEventLoop::quit);
    QDeadlineTimer latest;
    Absence absence(place->address.text());
    QObject::connect(&link, &BrokerLink::connected, &quiet, [&] {
        absence.end();
        if (!isListed) {
            latest.setRemainingTime(longestMs);
            quiet.start();
        }
    });
    QObject::connect(&link, &BrokerLink::received, &loop, [&](const BrokerMessage& message) {
        const QString changed = rigs.take(message);
        if (!isListed) {
            if (!latest.hasExpired()) {
                quiet.start();
            }
        } else if (!changed.isEmpty() && !message.topic.endsWith("/description")) {
            rigs.write(changed, output);
        }
    });
    QObject::connect(&link, &BrokerLink::disconnected, &loop, [&](const DWording& why) {
        if (const std::optional<QString> text = absence.begin(why)) {
            reportFailure("deviceUnreachable", {*text}, output);
        }
        if (!isListed) {
            status = ExitDeviceUnreachable;
            loop.quit();
        }
    });
    QObject::connect(&quiet, &QTimer::timeout, &loop, [&] {
        isListed = true;
        rigs.write(output);
        if (!options.watch) {
            loop.quit();
        }
    });
    link.open();
    loop.exec();
    link.leave();
    return status;
}
