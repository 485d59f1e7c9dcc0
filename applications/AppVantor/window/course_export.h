#pragma once

#include "course_sheet.h"
#include "course_view.h"
#include "line_filter.h"

/// The courses of the lines that a filter shows, as files: between both cursors where there are two, else of
/// the time that is shown, and no further than it is told what the lines did.
class CourseExport : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(CourseExport)

public:
    /// lines, view and filter must outlive this.
    CourseExport(LinesModel* lines, CourseView* view, LineFilter* filter, QObject* parent = nullptr);

    /// Writes file, of the kind that its name ends with: "csv", each change with its time, "vcd", a Value
    /// Change Dump, "svg" or "png", a picture. Returns an empty text, or why it cannot be written.
    Q_INVOKABLE QString save(const QString& file) const;

    QByteArray csv() const;
    QByteArray vcd() const;
    CourseSheet sheet() const;

private:
    struct Change
    {
        qint64 timeUs;
        int line; ///< its place among those that are shown
        LineLevel level;
    };

    TimeSpan span() const;
    TimeSpan toldSpan() const;
    QVector<int> shownLines() const;
    QString nameOf(int line) const;
    std::vector<Change> changes() const;

    LinesModel* const m_lines;
    CourseView* const m_view;
    LineFilter* const m_filter;
};
