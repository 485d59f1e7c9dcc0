#pragma once

#include <plugin_management/d_order.h>

/// Watches order from before its start: its signals must agree with its state, and none comes after its end.
void watchOrder(DOrder* order);
