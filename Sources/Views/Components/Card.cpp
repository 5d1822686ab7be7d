#include "Views/Components/Card.h"

#include "Views/Components/Theme.h"

#include <QPainter>

namespace brimvale {

namespace {

constexpr qreal cornerRadius = 12;

} // namespace

Card::Card(QWidget *parent) : QWidget(parent) {}

void Card::paintEvent(QPaintEvent * /*event*/) {
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme.border);
    painter.setBrush(theme.card);
    // A line one point wide fills its pixels only if it is centred at half a point.
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

} // namespace brimvale
