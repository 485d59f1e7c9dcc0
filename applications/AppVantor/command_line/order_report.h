#pragma once

#include <configuration/problem.h>
#include <process/output.h>

class DOrder;

/// An object about an order, of this type, with what stands in each of them. number is the order's number for
/// the user, 0 for one that was refused before it had one.
Json orderJson(const char* type, const DOrder& order, int number);

/// Writes what becomes of an order that has been started: its events, and its end. number is the order's
/// number for the user; place is where it stands in a script, if it does.
void reportOrder(DOrder* order, int number, Output* output, const Problem& place = {});

/// Writes why an order was refused before anything ran, as what was wrong with it tells.
void reportRefusal(const DOrder& order, Output* output, const Problem& place = {});
