#pragma once

#include <QString>

class DOrder;

/// What the arguments of an order do that was hardly meant, in one line; empty for nothing.
QString warningOf(const DOrder& order);

/// Why an order failed: its own reason, and what may help.
QString reasonOf(const DOrder& order);
