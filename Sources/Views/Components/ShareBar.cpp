#include "Views/Components/ShareBar.h"

#include <QPainter>
#include <QPainterPath>
#include <QRectF>
#include <algorithm>

namespace brimvale {

namespace {

constexpr qreal leastFilled = 2;

} // namespace

void paintShareBar(QPainter &painter, const QRect &cell, double share, const QColor &track,
                   const QColor &fill) {
    const int top = cell.center().y() - shareBarHeight / 2 + 1; // on a whole pixel
    const QRectF bar(cell.left(), top, cell.width(), shareBarHeight);
    const qreal radius = bar.height() / 2;
    QPainterPath shape;
    shape.addRoundedRect(bar, radius, radius);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, track);
    if (share > 0) {
        QRectF filled = bar;
        filled.setWidth(std::clamp(bar.width() * share, leastFilled, std::max(leastFilled, bar.width())));
        QPainterPath part;
        part.addRect(filled);
        // The round end would leave hardly anything of a narrow part.
        painter.fillPath(filled.width() < radius ? part : shape.intersected(part), fill);
    }
    painter.restore();
}

} // namespace brimvale
