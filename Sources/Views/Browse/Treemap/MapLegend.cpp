#include "Views/Browse/Treemap/MapLegend.h"

#include "Views/Components/Contrast.h"
#include "Views/Components/LegendLayout.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <cstddef>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr LegendStyle legendStyle = {.markSize = 9, .markGap = 5, .nameGap = 14, .lineHeight = 17};
constexpr int legendHeight = 2 * legendStyle.lineHeight;

} // namespace

MapLegend::MapLegend(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("mapLegend"));
    setAccessibleName(u"Legend"_s);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void MapLegend::setEntries(std::vector<MapColors::Entry> entries) {
    entries_ = std::move(entries);
    QStringList all;
    for (const MapColors::Entry &entry : entries_)
        all.append(u"%1, %2"_s.arg(text(entry.title), sizeText(entry.bytes)));
    setAccessibleDescription(all.join(u"; "_s));
    setToolTip(asToolTip(all.join(QLatin1Char('\n'))));
    update();
}

QSize MapLegend::sizeHint() const {
    return {200, Type::scaled(legendHeight)};
}

QSize MapLegend::minimumSizeHint() const {
    return {0, Type::scaled(legendHeight)};
}

void MapLegend::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setFont(legendFont());
    const auto placed = [this](const QRect &place) {
        return QStyle::visualRect(layoutDirection(), rect(), place);
    };
    std::vector<QString> names;
    for (const MapColors::Entry &entry : entries_)
        names.push_back(text(entry.title));
    const std::vector<LegendPlace> places = legendPlaces(names, legendStyle, width());
    for (std::size_t i = 0; i < places.size() && places[i].name.bottom() < height(); ++i) {
        const QColor color = toQColor(entries_[i].color);
        painter.setPen(outlineOf(color));
        painter.setBrush(color);
        painter.drawRect(placed(places[i].mark).adjusted(0, 0, -1, -1));
        painter.setPen(Theme::current().secondaryText);
        painter.drawText(placed(places[i].name),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, names[i]);
    }
}

} // namespace brimvale
