#include "course_view.h"

#include "course_measure.h"
#include "local_text.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double c_snapDistance = 8; // pixels
constexpr double c_rightEdge = 0.98; // a share from which on the pointer means the present

/// Of levels, which have five digits at most.
QString meanText(double mean)
{
    constexpr double large = 1000;
    return mean < large ? roundedText(mean, 4) : decimalText(mean, 0);
}

QString measuredText(const LineHistory& history, qint64 fromUs, qint64 toUs)
{
    const std::optional<SelectionMeasure> measure = measureBetween(history, fromUs, toUs);
    return measure ? qtTrId("selection_measure", measure->edges)
                         .arg(numberText(measure->levels.lowest), numberText(measure->levels.highest),
                              meanText(measure->mean))
                   : QString();
}

} // namespace

CourseView::CourseView(LinesModel* lines, QObject* parent)
    : QObject(parent)
    , m_lines(lines)
{
    const auto tellPointed = [this] {
        if (m_pointer >= 0) {
            Q_EMIT pointed();
        }
    };
    connect(&lines->clock(), &DeviceClock::ticked, this, &CourseView::follow);
    connect(this, &CourseView::moved, this, tellPointed);
    connect(this, &CourseView::changed, this, tellPointed);
}

TimeSpan CourseView::span() const
{
    return m_live ? TimeSpan{presentUs() - m_span.lengthUs, m_span.lengthUs} : m_span;
}

TimeColumns CourseView::columns() const
{
    return {m_span.lengthUs, std::max<qint64>(1, static_cast<qint64>(std::ceil(m_width * m_pixelRatio)))};
}

double CourseView::placeOf(qint64 timeUs) const
{
    const TimeSpan shown = span();
    const TimeColumns drawn = columns();
    const qint64 column = drawn.of(timeUs) - drawn.firstUntil(shown.toUs());
    const qint64 first = timeUs >= shown.fromUs ? 0 : column; // where the span begins the column may be cut
    return static_cast<double>(std::max(first, column)) / static_cast<double>(drawn.perSpan);
}

double CourseView::timeAt(double share) const
{
    const TimeColumns drawn = columns();
    constexpr double rounded = 1e-6; // the share of a column may come out a trifle before it
    const auto column = static_cast<qint64>(share * static_cast<double>(drawn.perSpan) + rounded);
    return static_cast<double>(
        drawn.shownBy(drawn.firstUntil(span().toUs()) + std::clamp<qint64>(column, 0, drawn.perSpan - 1)));
}

/// A cursor in a view that runs moves with the courses.
void CourseView::follow()
{
    if (!m_live) {
        return;
    }
    Q_EMIT moved();
    const TimeSpan shown = span();
    bool moves = false;
    for (const std::optional<qint64>& cursor : m_cursors) {
        moves = moves || (cursor && *cursor >= shown.fromUs);
    }
    if (moves && m_lines->clock().isRunning()) {
        Q_EMIT cursorsChanged();
        m_lines->clock().want();
    }
}

void CourseView::setWidth(double width)
{
    if (!qFuzzyCompare(width, m_width)) {
        m_width = width;
        Q_EMIT changed();
    }
}

void CourseView::setPixelRatio(double ratio)
{
    if (!qFuzzyCompare(ratio, m_pixelRatio)) {
        m_pixelRatio = ratio;
        Q_EMIT changed();
    }
}

void CourseView::setPointer(double share)
{
    if (share != m_pointer) {
        m_pointer = share;
        Q_EMIT pointed();
    }
}

QVariant CourseView::pointedUs() const
{
    return m_pointer >= 0 ? timeAt(m_pointer) : QVariant();
}

QString CourseView::pointedText() const
{
    if (m_pointer < 0) {
        return QString();
    }
    const auto resolutionUs = static_cast<qint64>(spanUs() / std::max(1.0, m_width));
    const auto timeUs = static_cast<qint64>(timeAt(m_pointer));
    return offsetText(timeUs - (m_live ? presentUs() : m_zeroUs), resolutionUs);
}

/// In a view that runs they stand still.
QVariantList CourseView::marks() const
{
    const qint64 zeroUs = m_live ? presentUs() : m_zeroUs;
    TimeSpan offsets = span();
    offsets.fromUs -= zeroUs;
    const QVector<qint64> marks = axisMarks(offsets, m_width);
    const qint64 stepUs = marks.size() > 1 ? marks.at(1) - marks.at(0) : offsets.lengthUs;
    QVariantList list;
    for (const qint64 mark : marks) {
        const double share = m_live ? offsets.shareOf(mark) : placeOf(zeroUs + mark);
        list.append(QVariantMap{{QStringLiteral("share"), share},
                                {QStringLiteral("text"), offsetText(mark, stepUs)}});
    }
    return list;
}

QVariantList CourseView::cursors() const
{
    QVariantList list;
    for (std::size_t cursor = 0; cursor < m_cursors.size(); ++cursor) {
        if (m_cursors.at(cursor)) {
            list.append(QVariantMap{{QStringLiteral("number"), static_cast<int>(cursor) + 1},
                                    {QStringLiteral("share"), placeOf(*m_cursors.at(cursor))}});
        }
    }
    return list;
}

QString CourseView::cursorsText() const
{
    const auto& [first, second] = m_cursors;
    if (!first || !second) {
        return first || second ? qtTrId("cursors_one").arg(first ? 1 : 2) : QString();
    }
    const qint64 apartUs = std::abs(*second - *first);
    const QString length = qtTrId("cursors_between").arg(lengthText(apartUs));
    return apartUs > 0 ? length + QStringLiteral(" \u00b7 ") + frequencyText(apartUs) : length;
}

QString CourseView::selectionText(int line) const
{
    const std::optional<TimeSpan> selected = selection();
    const LineHistory* history = m_lines->history(line);
    if (!selected || history == nullptr) {
        return QString();
    }
    const std::deque<LineLevel>& changes = history->changes();
    const qint64 fromUs =
        changes.empty() ? selected->fromUs : std::max(selected->fromUs, changes.front().sinceUs);
    const qint64 toUs = std::min(selected->toUs(), m_lines->toldUntilUs());
    const quint64 count = history->changeCountUntil(toUs);
    const bool isSame = m_selected.history == history && m_selected.fromUs == fromUs &&
                        m_selected.toUs == toUs && m_selected.changes == count;
    if (!isSame) {
        m_selected = {history, fromUs, toUs, count, measuredText(*history, fromUs, toUs)};
    }
    return m_selected.text;
}

std::optional<TimeSpan> CourseView::selection() const
{
    const auto& [first, second] = m_cursors;
    if (!first || !second) {
        return std::nullopt;
    }
    const qint64 fromUs = std::min(*first, *second);
    return TimeSpan{fromUs, std::max(*first, *second) - fromUs};
}

void CourseView::showAt(qint64 timeUs, double share)
{
    const auto beforeUs = static_cast<qint64>(spanUs() * share);
    show({timeUs - beforeUs, m_span.lengthUs});
}

void CourseView::zoom(double factor, double share)
{
    const bool rightStays = m_live && (factor < 1 || share >= c_rightEdge);
    const TimeSpan next = zoomed(span(), factor, rightStays ? 1 : share);
    if (rightStays) {
        m_span = next;
        Q_EMIT changed();
        Q_EMIT moved();
        Q_EMIT cursorsChanged();
    } else if (next.lengthUs != m_span.lengthUs) {
        show(next);
    }
}

void CourseView::pan(double share)
{
    const TimeSpan now = span();
    show({now.at(-share), now.lengthUs});
}

void CourseView::showAll()
{
    m_live = true;
    const auto wholeUs = static_cast<double>(presentUs() - earliestUs());
    zoom(static_cast<double>(m_span.lengthUs) / std::max(1.0, wholeUs), 1);
}

void CourseView::goLive()
{
    m_lines->clock().setRunning(true);
    m_live = true;
    zoom(1, 1);
    m_lines->clock().want();
}

QString CourseView::measureText(int line, double timeUs) const
{
    const LineHistory* history = m_lines->history(line);
    const std::optional<LevelMeasure> measure =
        history != nullptr ? measureAt(*history, static_cast<qint64>(timeUs)) : std::nullopt;
    if (!measure || !measure->widthUs) {
        return QString();
    }
    const bool digital = m_lines->highestLevel(line) == 1;
    const QString level =
        digital ? qtTrId(measure->level == 1 ? "measure_high" : "measure_low") : numberText(measure->level);
    QStringList parts{qtTrId("measure_width").arg(level, lengthText(*measure->widthUs))};
    if (digital && measure->periodUs) {
        constexpr double percent = 100;
        const double high = measure->level == 1 ? measure->share : 1 - measure->share;
        parts += qtTrId("measure_period").arg(lengthText(*measure->periodUs));
        parts += frequencyText(*measure->periodUs);
        parts += qtTrId("measure_duty").arg(roundedText(high * percent, 3));
    }
    return parts.join(QStringLiteral(" \u00b7 "));
}

void CourseView::setCursor(int number, double share, int line)
{
    if (number < 1 || number > static_cast<int>(m_cursors.size())) {
        return;
    }
    const auto timeUs = static_cast<qint64>(timeAt(share));
    const LineHistory* history = m_lines->history(line);
    const auto withinUs = static_cast<qint64>(spanUs() / std::max(1.0, m_width) * c_snapDistance);
    m_activeCursor = static_cast<std::size_t>(number) - 1;
    m_cursors.at(m_activeCursor) =
        history != nullptr ? nearestEdge(*history, timeUs, withinUs).value_or(timeUs) : timeUs;
    Q_EMIT cursorsChanged();
    m_lines->clock().want();
}

void CourseView::clearCursors()
{
    m_cursors = {};
    m_activeCursor = 0;
    Q_EMIT cursorsChanged();
}

void CourseView::stepCursor(const QList<int>& lines, bool forward)
{
    const TimeSpan shown = span();
    std::optional<qint64>& cursor = m_cursors.at(m_activeCursor);
    const qint64 fromUs = cursor.value_or(forward ? shown.fromUs : shown.toUs());
    std::optional<qint64> edge;
    for (const int line : lines) {
        const LineHistory* history = m_lines->history(line);
        const std::optional<qint64> next = history == nullptr ? std::nullopt
                                           : forward          ? edgeAfter(*history, fromUs)
                                                              : edgeBefore(*history, fromUs);
        if (next && (!edge || (*next < *edge) == forward)) {
            edge = next;
        }
    }
    if (!edge) {
        return;
    }
    cursor = edge;
    if (*edge < shown.fromUs || *edge > shown.toUs()) {
        show({*edge - shown.lengthUs / 2, shown.lengthUs});
    } else {
        hold();
        Q_EMIT changed();
        Q_EMIT cursorsChanged();
    }
}

/// Stays where it is.
void CourseView::hold()
{
    if (m_live) {
        m_span = span();
        m_zeroUs = presentUs();
        m_live = false;
    }
}

void CourseView::show(const TimeSpan& span)
{
    hold();
    const qint64 latest = presentUs() - span.lengthUs;
    m_span = {std::clamp(span.fromUs, std::min(earliestUs(), latest), latest), span.lengthUs};
    Q_EMIT changed();
    Q_EMIT moved();
    Q_EMIT cursorsChanged();
}

qint64 CourseView::earliestUs() const
{
    qint64 earliestUs = presentUs();
    for (int line = 0; line < m_lines->count(); ++line) {
        for (const LineLevel& change : m_lines->history(line)->changes()) {
            if (change.known) {
                earliestUs = std::min(earliestUs, change.sinceUs);
                break;
            }
        }
    }
    return std::max(earliestUs, presentUs() - LineHistory::c_longestUs);
}
