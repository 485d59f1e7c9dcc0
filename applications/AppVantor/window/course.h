#pragma once

#include "line_history.h"

#include <vector>

/// A part of a line's course: the columns of a picture in which it has these levels. In several columns that
/// is one level; in one alone it may be all that happened there.
struct CourseStep
{
    int column = 0;
    int columns = 1;
    LevelRange levels;
};

/// The course of a line over columns of columnUs microseconds each, the first from fromUs on, until untilUs:
/// its steps from left to right. Where the level is unknown there is none. Costs no more than there are
/// columns, however often the line changed.
std::vector<CourseStep> courseOf(const LineHistory& history, qint64 fromUs, qint64 columnUs, qint64 untilUs);
