#pragma once

#include <QString>
#include <QStringList>

class DOrder;

/// The words that a parameter knows, by its name; none for one that takes anything.
QStringList knownWords(const QString& parameter);

/// What the arguments of an order do that was hardly meant, in one line; empty for nothing.
QString warningOf(const DOrder& order);

/// Why an order failed: its own reason, and what may help.
QString reasonOf(const DOrder& order);
