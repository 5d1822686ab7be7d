#include "Views/Browse/Treemap/MapLegend.h"

#include "Views/Components/Contrast.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int squareSize = 9;
constexpr int squareGap = 5;
constexpr int nameGap = 14;
constexpr int lineHeight = 17;
constexpr int lines = 2;

QFont legendFont() {
    return Type::font(Type::Size::caption);
}

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
    return {200, lines * lineHeight};
}

QSize MapLegend::minimumSizeHint() const {
    return {0, lines * lineHeight};
}

void MapLegend::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setFont(legendFont());
    painter.setLayoutDirection(layoutDirection());
    const QFontMetrics metrics(legendFont());
    QPoint next;
    for (const MapColors::Entry &entry : entries_) {
        const QString name = text(entry.title);
        const int taken = squareSize + squareGap + metrics.horizontalAdvance(name);
        if (next.x() > 0 && next.x() + taken > width())
            next = {0, next.y() + lineHeight};
        if (next.y() >= height())
            break;
        const auto placed = [&](const QRect &rect) {
            return QStyle::visualRect(layoutDirection(), this->rect(), rect);
        };
        const QColor color = toQColor(entry.color);
        painter.setPen(outlineOf(color));
        painter.setBrush(color);
        painter.drawRect(
            placed({next.x(), next.y() + (lineHeight - squareSize) / 2, squareSize - 1, squareSize - 1}));
        painter.setPen(Theme::current().secondaryText);
        painter.drawText(placed({next.x() + squareSize + squareGap, next.y(), taken, lineHeight}),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, name);
        next.rx() += taken + nameGap;
    }
}

} // namespace brimvale
