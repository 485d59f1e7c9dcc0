#include "course_export.h"

#include "csv_field.h"
#include "files.h"

#include <process/time_text.h>
#include <trace/vcd_names.h>

#include <QFontMetrics>

#include <algorithm>

CourseExport::CourseExport(LinesModel* lines, CourseView* view, LineFilter* filter, QObject* parent)
    : QObject(parent)
    , m_lines(lines)
    , m_view(view)
    , m_filter(filter)
{}

QString CourseExport::save(const QString& file) const
{
    if (file.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive)) {
        return Files::write(file, csv());
    }
    if (file.endsWith(QLatin1String(".vcd"), Qt::CaseInsensitive)) {
        return Files::write(file, vcd());
    }
    if (file.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) {
        return Files::write(file, sheet().svg());
    }
    if (file.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        const QByteArray png = sheet().png();
        return png.isEmpty() ? qtTrId("export_too_high") : Files::write(file, png);
    }
    return qtTrId("export_kinds");
}

TimeSpan CourseExport::span() const
{
    return m_view->selection().value_or(m_view->span());
}

TimeSpan CourseExport::toldSpan() const
{
    const TimeSpan wanted = span();
    const qint64 untilUs = std::min(wanted.toUs(), m_lines->toldUntilUs());
    const qint64 fromUs = std::min(wanted.fromUs, untilUs);
    return {fromUs, untilUs - fromUs};
}

QVector<int> CourseExport::shownLines() const
{
    QVector<int> lines;
    for (int row = 0; row < m_filter->rowCount(); ++row) {
        lines.append(m_filter->index(row, 0).data(LinesModel::LineRole).toInt());
    }
    return lines;
}

QString CourseExport::nameOf(int line) const
{
    return m_lines->index(line).data(LinesModel::NameRole).toString();
}

/// In the order of their times, with the levels at the begin before them.
std::vector<CourseExport::Change> CourseExport::changes() const
{
    const TimeSpan shown = toldSpan();
    const QVector<int> lines = shownLines();
    std::vector<Change> changes;
    for (int place = 0; place < lines.size(); ++place) {
        const LineHistory& history = *m_lines->history(lines.at(place));
        changes.push_back({shown.fromUs, place, history.at(shown.fromUs)});
        for (std::size_t number = history.firstAfter(shown.fromUs);
             number < history.changes().size() && history.changes().at(number).sinceUs <= shown.toUs();
             ++number) {
            const LineLevel& level = history.changes().at(number);
            changes.push_back({level.sinceUs, place, level});
        }
    }
    std::stable_sort(changes.begin(), changes.end(),
                     [](const Change& one, const Change& other) { return one.timeUs < other.timeUs; });
    return changes;
}

QByteArray CourseExport::csv() const
{
    const QVector<int> lines = shownLines();
    QByteArray text = "time,line,level\n";
    for (const Change& change : changes()) {
        text += fullTime(m_lines->clock().scheduler().wallClock(change.timeUs)).toUtf8() + ',' +
                csvField(nameOf(lines.at(change.line))).toUtf8() + ',' +
                (change.level.known ? QByteArray::number(change.level.level) : QByteArray()) + '\n';
    }
    return text;
}

QByteArray CourseExport::vcd() const
{
    const QVector<int> lines = shownLines();
    const auto [startUs, lengthUs] = toldSpan();
    QByteArray text = "$date " + fullTime(m_lines->clock().scheduler().wallClock(startUs)).toUtf8() +
                      " $end\n$timescale 1 us $end\n$scope module device $end\n";
    QSet<QString> names;
    for (int place = 0; place < lines.size(); ++place) {
        const bool isReal = m_lines->highestLevel(lines.at(place)) > 1;
        text += QByteArray("$var ") + (isReal ? "real 64 " : "wire 1 ") + vcdCode(place).c_str() + ' ' +
                vcdName(nameOf(lines.at(place)), &names).toUtf8() + " $end\n";
    }
    text += "$upscope $end\n$enddefinitions $end\n";
    qint64 timeUs = -1;
    for (const Change& change : changes()) {
        if (change.timeUs - startUs != timeUs) {
            timeUs = change.timeUs - startUs;
            text += '#' + QByteArray::number(timeUs) + '\n';
        }
        if (m_lines->highestLevel(lines.at(change.line)) > 1) {
            text +=
                'r' + (change.level.known ? QByteArray::number(change.level.level) : QByteArray("nan")) + ' ';
        } else {
            text += change.level.known ? QByteArray::number(change.level.level) : QByteArray("x");
        }
        text += vcdCode(change.line).c_str() + QByteArray("\n");
    }
    if (lengthUs > timeUs) {
        text += '#' + QByteArray::number(lengthUs) + '\n'; // so long the last levels last
    }
    return text;
}

CourseSheet CourseExport::sheet() const
{
    constexpr int names = 12;
    constexpr int left = 120;
    constexpr int width = 1000;
    constexpr int right = 20;
    constexpr int head = 40;
    constexpr int row = 48;
    constexpr int margin = 10;
    const QColor grid(0xd8, 0xdc, 0xe2);
    const QColor course(0x1f, 0x5f, 0xd1);
    constexpr qreal courseWidth = 1.5;
    const QFontMetrics metrics(CourseSheet::font());
    const QVector<int> lines = shownLines();
    const TimeSpan shown = span();
    const qint64 untilUs = std::min(shown.toUs(), m_lines->toldUntilUs());
    CourseSheet sheet;
    sheet.size = QSize(left + width + right, head + row * lines.size());
    const QVector<qint64> marks = axisMarks({0, shown.lengthUs}, width);
    const qint64 stepUs = marks.size() > 1 ? marks.at(1) - marks.at(0) : shown.lengthUs;
    for (const qint64 mark : marks) {
        const int x = left + static_cast<int>(width * TimeSpan{0, shown.lengthUs}.shareOf(mark));
        QPainterPath path(QPointF(x, head));
        path.lineTo(x, sheet.size.height());
        sheet.strokes.push_back({path, grid, 1});
        sheet.labels.push_back({{x, 24}, offsetText(mark, stepUs), true});
    }
    const TimeColumns columns{std::max<qint64>(1, shown.lengthUs), width}; // both cursors may be in one place
    for (int place = 0; place < lines.size(); ++place) {
        const int top = head + row * place;
        const int highest = m_lines->highestLevel(lines.at(place));
        const auto y = [&](int level) { return top + row - margin - (row - 2 * margin) * level / highest; };
        QPainterPath path;
        int end = -1;
        for (const CourseStep& step : courseOf(*m_lines->history(lines.at(place)), columns,
                                               columns.firstUntil(shown.toUs()), untilUs)) {
            const int x = left + step.column;
            if (step.levels.gap) {
                path.moveTo(x, y(step.levels.lowest));
                path.lineTo(x, y(step.levels.highest));
                continue;
            }
            if (step.column == end) {
                path.lineTo(x, y(step.levels.lowest));
            } else {
                path.moveTo(x, y(step.levels.lowest));
            }
            path.lineTo(x, y(step.levels.highest));
            path.lineTo(x + step.columns, y(step.levels.highest));
            end = step.column + step.columns;
        }
        sheet.strokes.push_back({path, course, courseWidth});
        sheet.labels.push_back(
            {{names, top + row / 2 + 4},
             metrics.elidedText(nameOf(lines.at(place)), Qt::ElideMiddle, left - names - margin)});
    }
    return sheet;
}
