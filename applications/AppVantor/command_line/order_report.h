#pragma once

#include <configuration/problem.h>
#include <process/output.h>

#include <functional>
#include <optional>

class DOrder;

/// An object about an order, of this type, with what stands in each of them. number is the order's number for
/// the user, 0 for one that was refused before it had one.
Json orderJson(const char* type, const DOrder& order, int number);

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

/// Writes what becomes of an order that has been started, or is about to be: its events, and its end. number
/// is the order's number for the user; place is where it stands in a script, if it does.
void reportOrder(DOrder* order, int number, Output* output, const Problem& place = {},
                 const std::optional<ChannelReport>& ofChannel = std::nullopt);

/// Writes why an order was refused before anything ran, as what was wrong with it tells.
void reportRefusal(const DOrder& order, Output* output, const Problem& place = {});
