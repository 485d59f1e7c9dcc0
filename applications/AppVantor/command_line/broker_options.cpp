#include "broker_options.h"

std::optional<BrokerPlace> brokerOf(const Options& options, QString* problem)
{
    const QString url = options.broker.isEmpty() ? qEnvironmentVariable("APPVANTOR_BROKER") : options.broker;
    if (url.isEmpty()) {
        *problem = QStringLiteral("expected a broker: --broker URL, or the variable APPVANTOR_BROKER");
        return std::nullopt;
    }
    const std::optional<BrokerAddress> address = readBrokerAddress(url, problem);
    if (!address) {
        return std::nullopt;
    }
    BrokerPlace place{*address, {}};
    if (!options.rig.isEmpty()) {
        place.address.rig = options.rig;
    }
    place.access.authorities = options.authorities;
    place.access.certificate = options.certificate;
    place.access.key = options.key;
    *problem = readLogin(options.login, &place.access);
    return problem->isEmpty() ? std::optional<BrokerPlace>(place) : std::nullopt;
}
