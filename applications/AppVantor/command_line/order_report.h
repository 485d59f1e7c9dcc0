#pragma once

#include "output.h"

class DOrder;

/// Writes what becomes of an order: its events, and its end. number is the order's number for the user.
void reportOrder(DOrder* order, int number, Output* output);
