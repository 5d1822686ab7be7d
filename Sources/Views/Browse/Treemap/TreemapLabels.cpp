#include "Views/Browse/Treemap/TreemapLabels.h"

#include "Core/Treemap/DetailedStyle.h"
#include "Core/Treemap/TreemapStyle.h"
#include "Views/Components/Theme.h"

#include <QPainter>

namespace brimvale {

namespace {

constexpr int oneLine = Qt::TextSingleLine | Qt::TextDontClip;

QRectF toQRectF(const Rect &rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

} // namespace

TreemapLabels::TreemapLabels(QPainter &painter)
    : painter_(painter), nameFont_(Type::font(Type::Size::caption, QFont::Medium)),
      sizeFont_(Type::font(Type::Size::caption)), nameMetrics_(nameFont_), sizeMetrics_(sizeFont_) {}

void TreemapLabels::writeTwoLines(const Rect &tile, const QString &name, const QString &size,
                                  const QColor &color) {
    const Rect area = TreemapStyle::labelArea(tile, nameMetrics_.height() + sizeMetrics_.height());
    painter_.setClipRect(toQRectF(tile)); // some scripts are higher than the lines
    painter_.setPen(color);
    painter_.setFont(nameFont_);
    painter_.drawText(toQRectF(area), Qt::AlignLeft | Qt::AlignTop | oneLine,
                      nameMetrics_.elidedText(name, Qt::ElideMiddle, area.width));
    painter_.setFont(sizeFont_);
    painter_.drawText(toQRectF(area), Qt::AlignLeft | Qt::AlignBottom | oneLine,
                      sizeMetrics_.elidedText(size, Qt::ElideRight, area.width));
    painter_.setClipping(false);
}

void TreemapLabels::writeLine(const Rect &line, const QString &name, const QString &size,
                              const QColor &color) {
    constexpr double padding = DetailedStyle::padding;
    const QRectF area = toQRectF(line).adjusted(padding, 0, -padding, 0);
    double room = area.width();
    painter_.setClipRect(toQRectF(line));
    painter_.setPen(color);
    if (!size.isEmpty()) {
        painter_.setFont(sizeFont_);
        painter_.drawText(area, Qt::AlignRight | Qt::AlignVCenter | oneLine, size);
        room -= sizeMetrics_.horizontalAdvance(size) + 2 * padding;
    }
    painter_.setFont(nameFont_);
    painter_.drawText(area, Qt::AlignLeft | Qt::AlignVCenter | oneLine,
                      nameMetrics_.elidedText(name, Qt::ElideMiddle, room));
    painter_.setClipping(false);
}

void TreemapLabels::writeRemark(const Rect &area, const QString &remark, const QColor &color) {
    if (sizeMetrics_.horizontalAdvance(remark) > area.width)
        return;
    painter_.setPen(color);
    painter_.setFont(sizeFont_);
    painter_.drawText(toQRectF(area), Qt::AlignCenter | oneLine, remark);
}

} // namespace brimvale
