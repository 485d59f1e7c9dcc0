#pragma once

#include "line_history.h"

#include <vector>

/// Time in columns of a picture, counted from time 0: perSpan of them to spanUs microseconds, both 1 or more.
struct TimeColumns
{
    qint64 spanUs = 1;
    qint64 perSpan = 1;

    /// The column that timeUs, 0 or more, is in.
    qint64 of(qint64 timeUs) const { return timeUs * perSpan / spanUs; }
    /// The first microsecond of a column, or of one after it when it has none.
    qint64 startOf(qint64 column) const { return (column * spanUs + perSpan - 1) / perSpan; }
    /// The time whose level a column begins with: its first microsecond, or the last one before when it has
    /// none.
    qint64 shownBy(qint64 column) const
    {
        const qint64 startUs = startOf(column);
        return of(startUs) == column ? startUs : startUs - 1;
    }
    /// The first column of a picture of perSpan columns, in the last of which endUs is.
    qint64 firstUntil(qint64 endUs) const { return of(endUs) - perSpan + 1; }
};

/// A part of a line's course: the columns of a picture in which it has these levels. In several columns that
/// is one level; in one alone it may be all that happened there, a gap among it.
struct CourseStep
{
    int column = 0;
    int columns = 1;
    LevelRange levels;
};

/// The course of a line from the column first on until untilUs: its steps from left to right, counted from
/// first. Where the level is unknown there is none. Costs no more than there are columns, however often the
/// line changed.
std::vector<CourseStep> courseOf(const LineHistory& history, const TimeColumns& columns, qint64 first,
                                 qint64 untilUs);
