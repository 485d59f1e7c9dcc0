#pragma once

class DOrder;

/// The exit status that an order that has ended stands for.
int exitStatusOf(const DOrder& order);
