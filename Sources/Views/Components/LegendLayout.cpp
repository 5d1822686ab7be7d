#include "Views/Components/LegendLayout.h"

#include "Views/Components/Theme.h"

#include <QFontMetrics>
#include <QPoint>

namespace brimvale {

QFont legendFont() {
    return Type::font(Type::Size::caption);
}

std::vector<LegendPlace> legendPlaces(const std::vector<QString> &names, const LegendStyle &style,
                                      int width) {
    const QFontMetrics metrics(legendFont());
    const int lineHeight = Type::scaled(style.lineHeight);
    const int nameStart = style.markSize + style.markGap;
    std::vector<LegendPlace> places;
    QPoint next;
    for (const QString &name : names) {
        const int nameWidth = metrics.horizontalAdvance(name);
        if (next.x() > 0 && next.x() + nameStart + nameWidth > width)
            next = {0, next.y() + lineHeight};
        places.push_back(
            {{next.x(), next.y() + (lineHeight - style.markSize) / 2, style.markSize, style.markSize},
             {next.x() + nameStart, next.y(), nameWidth, lineHeight}});
        next.rx() += nameStart + nameWidth + style.nameGap;
    }
    return places;
}

} // namespace brimvale
