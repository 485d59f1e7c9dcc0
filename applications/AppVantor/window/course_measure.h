#pragma once

#include "line_history.h"

#include <optional>

// An edge is a change from one known level to another; where a level becomes known, or unknown, is none.

/// The time of the first edge after timeUs, if any.
std::optional<qint64> edgeAfter(const LineHistory& history, qint64 timeUs);
/// The time of the last edge before timeUs, if any.
std::optional<qint64> edgeBefore(const LineHistory& history, qint64 timeUs);
/// The time of the edge that is nearest to timeUs and not further than withinUs from it, if any.
std::optional<qint64> nearestEdge(const LineHistory& history, qint64 timeUs, qint64 withinUs);

/// What can be said of the level of a line at a time.
struct LevelMeasure
{
    int level = 0;
    /// From edge to edge.
    std::optional<qint64> widthUs;
    /// From the edge at which the level begins to the next of its kind, or if that has not come yet, from
    /// the one before to the one at which it ends. 1 or more.
    std::optional<qint64> periodUs;
    /// The width as a share of the period.
    double share = 0;
};

/// Measures the level that is there at timeUs; none where nobody knows it.
std::optional<LevelMeasure> measureAt(const LineHistory& history, qint64 timeUs);

/// What a line did in a part of time, as far as its level was known there.
struct SelectionMeasure
{
    /// Those at its begin and its end count.
    int edges = 0;
    LevelRange levels;
    /// Over the time in which the level was known.
    double mean = 0;
};

/// Measures from fromUs until before toUs; none where the level was never known.
std::optional<SelectionMeasure> measureBetween(const LineHistory& history, qint64 fromUs, qint64 toUs);
