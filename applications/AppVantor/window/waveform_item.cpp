#include "waveform_item.h"

#include "course.h"

#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace {

constexpr double c_lineWidth = 1.5;
constexpr double c_margin = 11;
constexpr double c_areaOpacity = 0.12;
constexpr double c_gapOpacity = 0.3; // of a column in which the level was unknown for a while

QColor faded(QColor color, double opacity)
{
    color.setAlphaF(color.alphaF() * opacity);
    return color;
}

/// Fills a rectangle that begins at a whole pixel; of a pixel that it covers in part it takes that part of
/// the colour. Much cheaper than what smooths edges anywhere.
void fill(QPainter* painter, QPoint from, QSizeF size, const QColor& color)
{
    const QSize whole(static_cast<int>(size.width()), static_cast<int>(size.height()));
    const double restX = size.width() - whole.width();
    const double restY = size.height() - whole.height();
    painter->fillRect(QRect(from, whole), color);
    if (restX > 0) {
        painter->fillRect(from.x() + whole.width(), from.y(), 1, whole.height(), faded(color, restX));
    }
    if (restY > 0) {
        painter->fillRect(from.x(), from.y() + whole.height(), whole.width(), 1, faded(color, restY));
    }
}

} // namespace

WaveformItem::WaveformItem(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setOpaquePainting(true);
}

void WaveformItem::setLines(LinesModel* lines)
{
    if (lines != m_lines) {
        if (!m_lines.isNull()) {
            disconnect(&m_lines->clock(), nullptr, this, nullptr);
        }
        m_lines = lines;
        if (lines != nullptr) {
            connect(&lines->clock(), &DeviceClock::ticked, this, &WaveformItem::follow);
            lines->clock().want();
        }
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

void WaveformItem::setView(CourseView* view)
{
    if (view != m_view) {
        if (!m_view.isNull()) {
            disconnect(m_view, nullptr, this, nullptr);
        }
        m_view = view;
        if (view != nullptr) {
            connect(view, &CourseView::changed, this, [this] { update(); });
        }
        Q_EMIT sourceChanged();
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

void WaveformItem::setGridColor(const QColor& color)
{
    if (color != m_gridColor) {
        m_gridColor = color;
        Q_EMIT colorChanged();
        update();
    }
}

/// What was hidden looks at the time again.
void WaveformItem::itemChange(ItemChange change, const ItemChangeData& value)
{
    const auto wake = [this] {
        if (!m_lines.isNull()) {
            m_lines->clock().want();
        }
    };
    if (change == ItemSceneChange) {
        if (window() != nullptr) {
            disconnect(window(), nullptr, this, nullptr);
        }
        if (value.window != nullptr) {
            connect(value.window, &QWindow::visibilityChanged, this, wake);
        }
    } else if (change == ItemVisibleHasChanged && value.boolValue) {
        wake();
    }
    QQuickPaintedItem::itemChange(change, value);
}

void WaveformItem::follow()
{
    const LineHistory* history = m_lines.isNull() ? nullptr : m_lines->history(m_line);
    if (history == nullptr || m_view.isNull() || !canBeSeen()) {
        return;
    }
    const TimeSpan shown = m_view->span();
    const bool hasMoved = m_columns.of(shown.toUs()) != m_lastColumn && history->hasChangedSince(m_fromUs);
    if (hasMoved || untoldColumns() != m_untold || history->changeCountUntil(shown.toUs()) != m_changes) {
        update();
    }
    if (m_lines->clock().isRunning() && m_view->isLive() && history->hasChangedSince(shown.fromUs)) {
        m_lines->clock().want(); // it goes on moving
    }
}

/// At the right edge, of what is told late.
qint64 WaveformItem::untoldColumns() const
{
    const qint64 endUs = m_view->span().toUs();
    return m_columns.of(endUs) - m_columns.of(std::min(endUs, m_lines->toldUntilUs()));
}

bool WaveformItem::canBeSeen() const
{
    if (!isVisible() || window() == nullptr || window()->visibility() == QWindow::Minimized) {
        return false;
    }
    const QQuickItem* around = this;
    while ((around = around->parentItem()) != nullptr) {
        const bool cuts = around->clip() || around == window()->contentItem();
        if (cuts && !mapRectToItem(around, boundingRect()).intersects(around->boundingRect())) {
            return false;
        }
    }
    return true;
}

void WaveformItem::paint(QPainter* painter)
{
    const double scale = painter->deviceTransform().m11(); // in pixels of the picture from here on
    painter->scale(1 / scale, 1 / scale);
    const int rows = static_cast<int>(std::ceil(height() * scale));
    const int pixel = std::max(1, static_cast<int>(scale));
    const LineHistory* history = m_lines.isNull() ? nullptr : m_lines->history(m_line);
    if (history == nullptr || m_view.isNull()) {
        return;
    }
    m_columns = m_view->columns();
    const QVariantList marks = m_view->marks();
    for (const QVariant& mark : marks) {
        const double share = mark.toMap().value(QStringLiteral("share")).toDouble();
        painter->fillRect(static_cast<int>(std::lround(share * static_cast<double>(m_columns.perSpan))), 0,
                          pixel, rows, m_gridColor);
    }
    const TimeSpan shown = m_view->span();
    m_lastColumn = m_columns.of(shown.toUs());
    const qint64 firstColumn = m_columns.firstUntil(shown.toUs());
    m_fromUs = m_columns.startOf(firstColumn);
    m_changes = history->changeCountUntil(shown.toUs());
    m_untold = untoldColumns();
    const qint64 untilUs = std::min(shown.toUs(), m_lines->toldUntilUs());

    const double lineWidth = c_lineWidth * scale;
    const double room = rows - 2 * c_margin * scale - lineWidth;
    const int highestLevel = std::max(1, m_lines->highestLevel(m_line));
    const auto rowOf = [&](int level) {
        return static_cast<int>(std::lround(c_margin * scale + room * (1 - double(level) / highestLevel)));
    };
    const int bottom = rowOf(0);
    for (const CourseStep& step : courseOf(*history, m_columns, firstColumn, untilUs)) {
        const int top = rowOf(step.levels.highest);
        const int low = rowOf(step.levels.lowest);
        if (!step.levels.gap) {
            painter->fillRect(step.column, low, step.columns, bottom - low, faded(m_color, c_areaOpacity));
        }
        fill(painter, {step.column, top}, {top == low ? step.columns : lineWidth, low - top + lineWidth},
             step.levels.gap ? faded(m_color, c_gapOpacity) : m_color);
    }
}
