#pragma once

#include <QString>

/// A text literal of the tests: "text"_q is a QString of the UTF-8 text.
inline QString operator""_q(const char* text, std::size_t length)
{
    return QString::fromUtf8(text, static_cast<int>(length));
}
