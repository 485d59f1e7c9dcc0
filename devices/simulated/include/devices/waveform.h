#pragma once

#include <QtGlobal>

/// The course of an analogue input over time, between two levels. It depends on nothing but the time, so that
/// every run sees the same.
struct Waveform
{
    enum class Shape
    {
        Constant, ///< always high
        Ramp,     ///< from low to high in each period, then low again
        Sine,     ///< around the middle, beginning there upwards
        Noise     ///< anywhere between, anew at each sample, by the seed
    };

    Shape shape = Shape::Constant;
    int low = 0;           ///< lowest level, 0..65535
    int high = 0;          ///< highest level, low..65535
    qint64 periodUs = 1;   ///< length of one period, at least 1 µs
    qint64 intervalUs = 1; ///< time between two samples, at least 1 µs
    quint32 seed = 0;

    /// The level at timeUs, 0 or more.
    int level(qint64 timeUs) const;
};
