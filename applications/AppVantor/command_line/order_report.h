#pragma once

#include <configuration/problem.h>
#include <process/output.h>

#include <functional>
#include <optional>

class DOrder;
struct DToolChannel;

/// How an order of one channel is reported that the user has named by its channel: people read of it by that
/// name, and of its success only where resultText tells it.
struct ChannelReport
{
    /// The events that are told; all without it.
    std::function<bool(const QVariantMap& event)> tells = {};
    /// An event for people; as for any order without it.
    std::function<QString(const QVariantMap& event, qint64 wallClockUs)> eventText = {};
    /// The results for people.
    std::function<QString(const QVariantMap& results)> resultText = {};
};

/// How the reading of channel is reported: "DOOR=ON".
ChannelReport levelReport(const DToolChannel& channel);

/// Writes what becomes of an order that has been started, or is about to be: its events, and its end. place
/// is where it stands in a script, if it does. Returns the order's number for the user.
int reportOrder(DOrder* order, Output* output, const Problem& place = {},
                const std::optional<ChannelReport>& ofChannel = std::nullopt);

/// Writes why an order was refused before anything ran, as what was wrong with it tells.
void reportRefusal(const DOrder& order, Output* output, const Problem& place = {});
