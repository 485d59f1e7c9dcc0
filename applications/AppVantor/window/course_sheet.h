#pragma once

#include <QByteArray>
#include <QColor>
#include <QFont>
#include <QPainterPath>
#include <QSize>
#include <QString>

#include <vector>

/// A drawing of courses: strokes and texts on white paper.
struct CourseSheet
{
    struct Stroke
    {
        QPainterPath path; ///< of straight lines
        QColor color;
        qreal width = 1;
    };

    struct Label
    {
        QPoint place; ///< where its first letter stands, or its middle
        QString text;
        bool centred = false;
    };

    QSize size; ///< in pixels
    std::vector<Stroke> strokes;
    std::vector<Label> labels;

    /// In which the texts are written.
    static QFont font();
    /// The drawing as a file of Scalable Vector Graphics.
    QByteArray svg() const;
    /// The drawing as a PNG file; empty when it is larger than a picture can be.
    QByteArray png() const;
};
