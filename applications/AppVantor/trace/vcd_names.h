#pragma once

#include <QSet>
#include <QString>

#include <string>

/// The short code of a variable in a Value Change Dump: its number, 0 or more, in the printable characters.
Q_DECL_EXPORT std::string vcdCode(int number);

/// A name in a Value Change Dump for text: not empty, without blanks, and nothing that reads as a word of the
/// dump. It is none of those taken, among which it is then.
Q_DECL_EXPORT QString vcdName(const QString& text, QSet<QString>* taken);
