#pragma once

#include <process/output.h>

class DOrder;

/// Writes what becomes of an order that has been started: its events, and its end. number is the order's
/// number for the user.
void reportOrder(DOrder* order, int number, Output* output);
