#include <devices/rig_lookup.h>

#include <devices/broker_link.h>
#include <devices/rig_changes.h>
#include <devices/rig_topics.h>

#include <QEventLoop>
#include <QUuid>

std::optional<QByteArray> describedRig(const BrokerAddress& address, const BrokerAccess& access,
                                       DWording* problem)
{
    constexpr int patienceMs = 3000;
    const RigTopics topics(address.rig);
    BrokerLink link(address, access, "appvantor-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces));
    link.subscribe(topics.state());
    link.subscribe(topics.description());
    QEventLoop loop;
    bool isOnline = false;
    std::optional<QByteArray> description;
    *problem = wording("%1: it does not answer").arg(address.text());
    QObject::connect(&link, &BrokerLink::connected, &loop, [&] {
        *problem = wording(R"(there is no rig "%1" on %2)").arg(address.rig, address.text());
    });
    QObject::connect(&link, &BrokerLink::disconnected, &loop, [&](const DWording& why) {
        *problem = wording("%1: %2").arg(address.text(), why);
        loop.quit();
    });
    QObject::connect(&link, &BrokerLink::received, &loop, [&](const BrokerMessage& message) {
        if (message.topic == topics.description()) {
            description = message.payload;
        } else if (const auto state = RigState::fromJson(message.payload)) {
            isOnline = state->isOnline();
            *problem = wording(R"(the rig "%1" is %2)").arg(address.rig, DWording::told(state->state));
        }
        if (isOnline && description) {
            loop.quit();
        }
    });
    link.open();
    QTimer::singleShot(patienceMs, &loop, &QEventLoop::quit);
    loop.exec();
    link.leave();
    return isOnline ? description : std::nullopt;
}
