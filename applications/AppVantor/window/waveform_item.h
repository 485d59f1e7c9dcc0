#pragma once

#include "lines_model.h"

#include <QPointer>
#include <QQuickPaintedItem>

/// The course of one line over the last seconds, the present on the right, on a grid of fifths. It is drawn
/// anew only when its picture changes and can be seen, and makes the clock tick only as long as it moves.
class WaveformItem : public QQuickPaintedItem
{
    Q_OBJECT
    Q_DISABLE_COPY(WaveformItem)
    Q_PROPERTY(LinesModel* lines READ lines WRITE setLines NOTIFY sourceChanged)
    Q_PROPERTY(int line READ line WRITE setLine NOTIFY sourceChanged)
    /// Time from the left to the right edge, in microseconds.
    Q_PROPERTY(double span READ span WRITE setSpan NOTIFY spanChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QColor gridColor READ gridColor WRITE setGridColor NOTIFY colorChanged)

public:
    explicit WaveformItem(QQuickItem* parent = nullptr);

    LinesModel* lines() const { return m_lines; }
    void setLines(LinesModel* lines);
    int line() const { return m_line; }
    void setLine(int line);
    double span() const { return m_spanUs; }
    void setSpan(double span);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);
    QColor gridColor() const { return m_gridColor; }
    void setGridColor(const QColor& color);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void sourceChanged();
    void spanChanged();
    void colorChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    void follow();
    bool canBeSeen() const;

    QPointer<LinesModel> m_lines;
    int m_line = -1;
    double m_spanUs = 10e6;
    QColor m_color;
    QColor m_gridColor;
    // Of the last picture:
    qint64 m_columnUs = 1;   ///< time that a column of pixels stands for
    qint64 m_lastColumn = 0; ///< the one that the present is in, counted from time 0
    qint64 m_fromUs = 0;     ///< time at the left edge
    quint64 m_changes = 0;   ///< of the line so far
};
