#include "course_sheet.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>

namespace {

constexpr int c_textSize = 13;

QString pathText(const QPainterPath& path)
{
    QString text;
    for (int number = 0; number < path.elementCount(); ++number) {
        const QPainterPath::Element element = path.elementAt(number);
        text += (element.isMoveTo() ? QStringLiteral("M%1 %2") : QStringLiteral("L%1 %2"))
                    .arg(element.x)
                    .arg(element.y);
    }
    return text;
}

} // namespace

QFont CourseSheet::font()
{
    QFont font(QStringLiteral("sans-serif"));
    font.setPixelSize(c_textSize);
    return font;
}

QByteArray CourseSheet::svg() const
{
    QString text = QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\" "
                                  "font-family=\"sans-serif\" font-size=\"%3\">\n"
                                  "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n")
                       .arg(size.width())
                       .arg(size.height())
                       .arg(c_textSize);
    for (const Stroke& stroke : strokes) {
        text += QStringLiteral("<path d=\"%1\" fill=\"none\" stroke=\"%2\" stroke-width=\"%3\"/>\n")
                    .arg(pathText(stroke.path), stroke.color.name())
                    .arg(stroke.width);
    }
    for (const Label& label : labels) {
        text += QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"%3\">%4</text>\n")
                    .arg(label.place.x())
                    .arg(label.place.y())
                    .arg(label.centred ? QStringLiteral("middle") : QStringLiteral("start"),
                         label.text.toHtmlEscaped());
    }
    return (text + QStringLiteral("</svg>\n")).toUtf8();
}

QByteArray CourseSheet::png() const
{
    constexpr int most = 32767; // pixels in a direction that a painter reaches
    QByteArray file;
    if (size.width() > most || size.height() > most) {
        return file;
    }
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Stroke& stroke : strokes) {
        painter.strokePath(stroke.path, QPen(stroke.color, stroke.width, Qt::SolidLine, Qt::FlatCap));
    }
    painter.setFont(font());
    painter.setPen(Qt::black);
    for (const Label& label : labels) {
        const int before = label.centred ? painter.fontMetrics().horizontalAdvance(label.text) / 2 : 0;
        painter.drawText(label.place - QPoint(before, 0), label.text);
    }
    painter.end();
    QBuffer buffer(&file);
    picture.save(&buffer, "PNG");
    return file;
}
