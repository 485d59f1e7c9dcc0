#pragma once

#include <configuration/problem.h>
#include <process/json_line.h>

#include <functional>

class DOrder;

// What becomes of an order, as programs read it. number is what the order is called, 0 for one that was
// refused before it was called anything; place is where it stands in a script, if it does.

/// It does what was hardly meant.
Json warningJson(const DOrder& order, int number, const QString& warning, const Problem& place);
/// An event, true since timeUs on the steady clock.
Json eventJson(const DOrder& order, int number, const QVariantMap& event, qint64 timeUs);
/// So many events were left out, and why.
Json lostJson(const DOrder& order, int number, quint64 count, const QString& reason);
/// Why it failed, without results.
Json failureJson(const DOrder& order, int number, const Problem& place);
/// Its end.
Json endJson(const DOrder& order, int number, const Problem& place);

/// Hands each object of an order that has been started to write; its end is the last one.
void followOrder(DOrder* order, int number, const std::function<void(const Json&)>& write);

/// The wall-clock time that belongs to timeUs of the order's steady clock, in microseconds since 1970.
qint64 wallClockOf(const DOrder& order, qint64 timeUs);
