#include "waveform_item.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double c_lineWidth = 1.5;
constexpr double c_margin = 3;

/// What happened within one column of pixels, however often the line changed there.
struct Column
{
    double x;
    double lowest;
    double highest;
    double last;
};

void appendColumn(QPolygonF* course, const Column& column)
{
    const double previous = course->last().y();
    *course << QPointF(column.x, previous);
    if (std::min(column.lowest, previous) < std::min(previous, column.last) ||
        std::max(column.highest, previous) > std::max(previous, column.last)) {
        *course << QPointF(column.x, column.lowest) << QPointF(column.x, column.highest);
    }
    *course << QPointF(column.x, column.last);
}

} // namespace

WaveformItem::WaveformItem(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{}

void WaveformItem::setLines(LinesModel* lines)
{
    if (lines != m_lines) {
        m_lines = lines;
        Q_EMIT sourceChanged();
        update();
    }
}

void WaveformItem::setLine(int line)
{
    if (line != m_line) {
        m_line = line;
        Q_EMIT sourceChanged();
        update();
    }
}

void WaveformItem::setNow(double now)
{
    if (qFuzzyCompare(now, m_now)) {
        return;
    }
    const double earliest = std::min(now, m_now) - m_span;
    m_now = now;
    Q_EMIT nowChanged();
    const LineHistory* history = m_lines.isNull() ? nullptr : m_lines->history(m_line);
    if (history != nullptr && (history->hasChangedSince(static_cast<qint64>(earliest)) ||
                               m_lines->clock().startUs() >= static_cast<qint64>(earliest))) {
        update();
    }
}

void WaveformItem::setSpan(double span)
{
    if (!qFuzzyCompare(span, m_span)) {
        m_span = span;
        Q_EMIT spanChanged();
        update();
    }
}

void WaveformItem::setColor(const QColor& color)
{
    if (color != m_color) {
        m_color = color;
        Q_EMIT colorChanged();
        update();
    }
}

void WaveformItem::paint(QPainter* painter)
{
    const QPolygonF line = course();
    if (line.isEmpty()) {
        return;
    }
    QColor area = m_color;
    area.setAlphaF(0.12);
    QPolygonF below = line;
    below << QPointF(line.last().x(), y(0)) << QPointF(line.first().x(), y(0));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(area);
    painter->drawPolygon(below);
    QPen pen(m_color, c_lineWidth);
    pen.setJoinStyle(Qt::MiterJoin);
    pen.setCapStyle(Qt::FlatCap);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawPolyline(line);
}

QPolygonF WaveformItem::course() const
{
    const LineHistory* history = m_lines.isNull() ? nullptr : m_lines->history(m_line);
    if (history == nullptr || m_now <= 0) {
        return QPolygonF();
    }
    const auto nowUs = static_cast<qint64>(m_now);
    const qint64 fromUs = std::max(static_cast<qint64>(m_now - m_span), m_lines->clock().startUs());
    const auto& samples = history->samples();
    auto sample = std::upper_bound(
        samples.cbegin(), samples.cend(), fromUs,
        [](qint64 time, const LineHistory::Sample& candidate) { return time < candidate.timeUs; });
    QPolygonF course;
    course << QPointF(x(fromUs), y(history->levelAt(fromUs)));
    while (sample != samples.cend() && sample->timeUs <= nowUs) {
        const double edge = std::round(x(sample->timeUs));
        Column column{edge, y(sample->level), y(sample->level), y(sample->level)};
        while (++sample != samples.cend() && sample->timeUs <= nowUs &&
               std::round(x(sample->timeUs)) <= edge) {
            column.last = y(sample->level);
            column.lowest = std::min(column.lowest, column.last);
            column.highest = std::max(column.highest, column.last);
        }
        appendColumn(&course, column);
    }
    course << QPointF(width(), course.last().y());
    return course;
}

double WaveformItem::x(qint64 timeUs) const
{
    return width() * (1 - (m_now - static_cast<double>(timeUs)) / m_span);
}

double WaveformItem::y(int level) const
{
    const int highest = std::max(1, m_lines->highestLevel(m_line));
    return c_margin + (height() - 2 * c_margin) * (1 - static_cast<double>(level) / highest);
}
