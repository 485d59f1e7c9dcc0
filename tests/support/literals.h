#pragma once

#include <QString>

#include <cstddef>

/// "text"_s is a QString.
inline QString operator""_s(const char* text, std::size_t length)
{
    return QString::fromUtf8(text, static_cast<int>(length));
}
