#include "Views/Browse/Treemap/TreemapLabels.h"

#include "Core/Treemap/DetailedStyle.h"
#include "Core/Treemap/TreemapStyle.h"
#include "Views/Components/Theme.h"

#include <QPainter>

namespace brimvale {

namespace {

QRectF toQRectF(const Rect &rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

} // namespace

TreemapLabels::TreemapLabels(QPainter &painter)
    : painter_(painter), nameFont_(Type::font(Type::Size::caption, QFont::Medium)),
      sizeFont_(Type::font(Type::Size::caption)) {}

void TreemapLabels::writeTwoLines(const Rect &tile, const QString &name, const QString &size,
                                  const QColor &color) {
    const QRectF area = toQRectF(TreemapStyle::labelArea(tile, nameFont_.height() + sizeFont_.height()));
    painter_.setPen(color);
    const QString shown = nameFont_.elided(name, area.width());
    write({nameFont_, shown, Side::start}, area, area.top() + nameFont_.ascent(), tile);
    write({sizeFont_, sizeFont_.elided(size, area.width()), Side::start}, area,
          area.bottom() - sizeFont_.height() + sizeFont_.ascent(), tile);
}

void TreemapLabels::writeLine(const Rect &line, const QString &name, const QString &size,
                              const QColor &color) {
    constexpr double padding = DetailedStyle::padding;
    const QRectF area = toQRectF(line).adjusted(padding, 0, -padding, 0);
    double room = area.width();
    painter_.setPen(color);
    if (!size.isEmpty()) {
        write({sizeFont_, size, Side::end}, area, middleBaseline(area, sizeFont_), line);
        room -= sizeFont_.widthOf(size) + 2 * padding;
    }
    write({nameFont_, nameFont_.elided(name, room), Side::start}, area, middleBaseline(area, nameFont_),
          line);
}

void TreemapLabels::writeRemark(const Rect &area, const QString &remark, const QColor &color) {
    const qreal width = sizeFont_.widthOf(remark);
    if (width > area.width)
        return;
    painter_.setPen(color);
    const QRectF place = toQRectF(area).adjusted((area.width - width) / 2, 0, 0, 0);
    write({sizeFont_, remark, Side::left}, place, middleBaseline(place, sizeFont_), area);
}

qreal TreemapLabels::middleBaseline(const QRectF &area, const LabelFont &font) {
    return area.center().y() - font.height() / 2 + font.ascent();
}

/// Writes a text that fits into a line. Some scripts are higher than the line, so these are cut at `edge`.
void TreemapLabels::write(const Text &text, const QRectF &line, qreal baseline, const Rect &edge) {
    if (text.words.isEmpty())
        return;
    const bool isMirrored = painter_.layoutDirection() == Qt::RightToLeft;
    const bool isLeft = text.side == Side::left || (text.side == Side::start) != isMirrored;
    const qreal x = isLeft ? line.left() : line.right() - text.font.widthOf(text.words);
    const bool isCut = !LabelFont::isPlain(text.words);
    if (isCut)
        painter_.setClipRect(toQRectF(edge));
    painter_.setFont(text.font.font());
    painter_.drawText(QPointF(x, baseline), text.words);
    if (isCut)
        painter_.setClipping(false);
}

} // namespace brimvale
