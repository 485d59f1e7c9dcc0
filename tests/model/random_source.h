#pragma once

#include <QtGlobal>

#include <random>

/// Random choices, the same ones for the same seed.
class RandomSource
{
public:
    explicit RandomSource(quint64 seed)
        : m_generator(seed)
    {}

    /// A number from 0 to count - 1.
    int below(int count) { return static_cast<int>(m_generator() % static_cast<quint64>(count)); }
    /// True in percent of 100 cases.
    bool chance(int percent) { return below(100) < percent; }
    /// One element of a container that has some.
    template <typename Container>
    auto& of(Container& container)
    {
        return container[static_cast<typename Container::size_type>(
            below(static_cast<int>(container.size())))];
    }

private:
    std::mt19937_64 m_generator;
};
