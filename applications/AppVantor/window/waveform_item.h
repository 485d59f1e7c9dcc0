#pragma once

#include "course_view.h"

#include <QPointer>
#include <QQuickPaintedItem>

/// The course of one line over the time of a view, with a grid at the marks of its axis. It is drawn anew
/// only when its picture changes and can be seen, and makes the clock tick only as long as it moves.
class WaveformItem : public QQuickPaintedItem
{
    Q_OBJECT
    Q_DISABLE_COPY(WaveformItem)
    Q_PROPERTY(LinesModel* lines READ lines WRITE setLines NOTIFY sourceChanged)
    Q_PROPERTY(int line READ line WRITE setLine NOTIFY sourceChanged)
    Q_PROPERTY(CourseView* view READ view WRITE setView NOTIFY sourceChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QColor gridColor READ gridColor WRITE setGridColor NOTIFY colorChanged)

public:
    explicit WaveformItem(QQuickItem* parent = nullptr);

    LinesModel* lines() const { return m_lines; }
    void setLines(LinesModel* lines);
    int line() const { return m_line; }
    void setLine(int line);
    CourseView* view() const { return m_view; }
    void setView(CourseView* view);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);
    QColor gridColor() const { return m_gridColor; }
    void setGridColor(const QColor& color);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void sourceChanged();
    void colorChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    void follow();
    bool canBeSeen() const;
    qint64 untoldColumns() const;

    QPointer<LinesModel> m_lines;
    QPointer<CourseView> m_view;
    int m_line = -1;
    QColor m_color;
    QColor m_gridColor;
    // Of the last picture:
    TimeColumns m_columns;
    qint64 m_lastColumn = 0;
    qint64 m_fromUs = 0;   ///< time at the left edge
    qint64 m_untold = 0;   ///< columns at the right edge
    quint64 m_changes = 0; ///< of the line until the right edge, those before the left one too
};
