#include "page_width.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace {

// A page has two columns of rows. A row has an indicator, the names and the frame of a value.
constexpr double c_gap = 8;
constexpr double c_indicator = 40;
constexpr double c_frameInset = 4;
constexpr double c_namesShare = 0.6;

/// What a text takes when it is laid out: a fraction more than it measures.
double laidOut(double width)
{
    return std::ceil(width) + 1;
}

} // namespace

double pageWidth(const QVector<DToolChannel>& channels, const QFont& font)
{
    QFont bold = font;
    bold.setBold(true);
    const QFontMetricsF ids(bold);
    const QFontMetricsF names(font);
    double widestName = 0;
    double widestLevel = 0;
    for (const DToolChannel& channel : channels) {
        if (channel.visibility != QLatin1String("public")) {
            continue;
        }
        widestName =
            std::max({widestName, ids.horizontalAdvance(channel.id), names.horizontalAdvance(channel.name)});
        if (channel.items.value(QStringLiteral("type")) == QLatin1String("analogOutput")) {
            widestLevel = names.horizontalAdvance(QStringLiteral("65535"));
        }
    }
    double row = laidOut(widestName) / c_namesShare;
    if (widestLevel > 0) {
        const double frame = laidOut(widestLevel) + 2 * c_frameInset;
        row = std::max(row, (c_indicator + 2 * c_gap + frame) / (1 - c_namesShare));
    }
    return widestName > 0 ? std::ceil(2 * (row + c_gap) + 2 * c_gap) : 0;
}
