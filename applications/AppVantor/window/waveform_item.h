#pragma once

#include "lines_model.h"

#include <QPointer>
#include <QQuickPaintedItem>

/// The course of one line over the last seconds, the present on the right. It draws itself anew only when its
/// picture changes: a line that is quiet costs nothing.
class WaveformItem : public QQuickPaintedItem
{
    Q_OBJECT
    Q_DISABLE_COPY(WaveformItem)
    Q_PROPERTY(LinesModel* lines READ lines WRITE setLines NOTIFY sourceChanged)
    Q_PROPERTY(int line READ line WRITE setLine NOTIFY sourceChanged)
    /// Time at the right edge, in microseconds on the device's clock.
    Q_PROPERTY(double now READ now WRITE setNow NOTIFY nowChanged)
    /// Time from the left to the right edge, in microseconds.
    Q_PROPERTY(double span READ span WRITE setSpan NOTIFY spanChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit WaveformItem(QQuickItem* parent = nullptr);

    LinesModel* lines() const { return m_lines; }
    void setLines(LinesModel* lines);
    int line() const { return m_line; }
    void setLine(int line);
    double now() const { return m_now; }
    void setNow(double now);
    double span() const { return m_span; }
    void setSpan(double span);
    QColor color() const { return m_color; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void sourceChanged();
    void nowChanged();
    void spanChanged();
    void colorChanged();

private:
    /// The corners of the line's course, from left to right.
    QPolygonF course() const;
    double x(qint64 timeUs) const;
    double y(int level) const;

    QPointer<LinesModel> m_lines;
    int m_line = -1;
    double m_now = 0;
    double m_span = 10e6;
    QColor m_color;
};
