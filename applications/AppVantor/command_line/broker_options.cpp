#include "broker_options.h"

namespace {

QString urlOf(const Options& options)
{
    return options.broker.isEmpty() ? qEnvironmentVariable("APPVANTOR_BROKER") : options.broker;
}

} // namespace

std::optional<BrokerPlace> brokerOf(const Options& options, DWording* problem)
{
    const QString url = urlOf(options);
    if (url.isEmpty()) {
        *problem = wording("expected a broker: --broker URL, or the variable APPVANTOR_BROKER");
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
    *problem = unreadableFile(place.access);
    if (problem->isEmpty()) {
        *problem = readLogin(options.login, &place.access);
    }
    return problem->isEmpty() ? std::optional<BrokerPlace>(place) : std::nullopt;
}

std::optional<QString> rigMeant(const Options& options)
{
    if (!options.rig.isEmpty()) {
        return options.rig;
    }
    const QString url = urlOf(options);
    DWording problem;
    const std::optional<BrokerAddress> address = readBrokerAddress(url, &problem);
    const QString rig = address ? address->rig : QString();
    const bool isUsual = options.configuration.isEmpty() && !url.isEmpty() && (!address || !rig.isEmpty());
    return isUsual || !options.broker.isEmpty() ? std::optional<QString>(rig) : std::nullopt;
}
