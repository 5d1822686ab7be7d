#include "Views/Browse/Treemap/TreemapPicture.h"

#include "Core/Treemap/DetailedStyle.h"
#include "Core/Treemap/TreemapStyle.h"
#include "Views/Browse/Treemap/TreemapLabels.h"
#include "Views/Components/Contrast.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

#include <QImage>
#include <QPainterPath>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// The pixels of a tile whose edges are moved to the nearest place between two pixels.
QRect pixelsOf(const Rect &tile, qreal devicePixelRatio) {
    const int x = qRound(tile.x * devicePixelRatio);
    const int y = qRound(tile.y * devicePixelRatio);
    return {x, y, qRound((tile.x + tile.width) * devicePixelRatio) - x,
            qRound((tile.y + tile.height) * devicePixelRatio) - y};
}

/// Paints a tile at `tile`, in pixels of a 32-bit image. Qt is slow with large rounded shapes, so a low one
/// is painted and then stretched: between the corners all rows are the same.
void paintTile(QImage &image, const QRect &tile, const QColor &fill, qreal devicePixelRatio) {
    const QRect rect = tile.intersected(image.rect());
    const int corner = static_cast<int>(std::ceil(TreemapStyle::cornerRadius * devicePixelRatio));
    const int lowHeight = std::min(rect.height(), 2 * corner + 1);
    QPainter painter(&image);
    painter.scale(devicePixelRatio, devicePixelRatio);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    const QRectF low(QPointF(rect.topLeft()) / devicePixelRatio,
                     QSizeF(rect.width(), lowHeight) / devicePixelRatio);
    painter.drawRoundedRect(low, TreemapStyle::cornerRadius, TreemapStyle::cornerRadius);
    QColor border(Qt::black);
    border.setAlphaF(static_cast<float>(TreemapStyle::borderOpacity));
    TreemapPicture::drawFrame(painter, low, TreemapStyle::borderWidth, border);
    painter.end();

    constexpr qsizetype pixelSize = 4;
    const auto row = [&](int y) { return image.scanLine(rect.y() + y) + rect.x() * pixelSize; };
    for (int y = rect.height() - 1; y > corner; --y) {
        const bool isAboveCorners = y < rect.height() - corner;
        const int painted = isAboveCorners ? corner : y - (rect.height() - lowHeight);
        if (painted != y)
            std::memcpy(row(y), row(painted), static_cast<std::size_t>(rect.width() * pixelSize));
    }
}

/// Fills a flat tile. At its right and at its bottom, its parent folder shows through.
void fillFlat(QPainter &painter, const QRect &pixels, const QColor &fill, qreal devicePixelRatio) {
    const int gap = std::max(1, qRound(DetailedStyle::gap * devicePixelRatio));
    painter.fillRect(pixels.adjusted(0, 0, -gap, -gap), fill);
}

/// Paints one picture on an image.
class Painting {
public:
    Painting(QImage &image, const TreemapPicture::Subject &subject, const Theme &theme,
             qreal devicePixelRatio)
        : image_(image), subject_(subject), surface_(TreemapPicture::surface(theme)),
          devicePixelRatio_(devicePixelRatio), remarks_(theme.secondaryText) {}

    void paintTiles();
    void paintDetails();
    void writeLabels(Qt::LayoutDirection direction) const;

private:
    [[nodiscard]] bool standsBack(const TreemapTile &tile) const {
        return subject_.isHighlighted && !tile.isOpen() && !subject_.isHighlighted(*tile.node);
    }
    void paintSeparators();
    void writeLabel(TreemapLabels &labels, const TreemapTile &tile, const QColor &color) const;
    void writeRemarks(TreemapLabels &labels) const;

    QImage &image_;
    const TreemapPicture::Subject &subject_;
    const TreemapStyle::Surface surface_;
    const qreal devicePixelRatio_;
    const QColor remarks_;
    std::vector<Color> colors_; ///< of the tiles
};

void Painting::paintTiles() {
    for (const TreemapTile &tile : subject_.tiles) {
        const Color fill = TreemapStyle::over(surface_.background, TreemapStyle::fill(*tile.node, surface_));
        colors_.push_back(standsBack(tile) ? DetailedStyle::dimmed(fill, surface_.background) : fill);
        paintTile(image_, pixelsOf(tile.rect, devicePixelRatio_), toQColor(colors_.back()),
                  devicePixelRatio_);
    }
    paintSeparators();
}

/// The lines between tiles of one colour, which begin at the pixels of their edges.
void Painting::paintSeparators() {
    QPainter painter(&image_);
    const int width = std::max(1, qRound(TreemapStyle::separatorWidth * devicePixelRatio_));
    for (const TreemapStyle::Separator &one : TreemapStyle::separators(subject_.tiles, surface_)) {
        const QRect line = pixelsOf(one.line, devicePixelRatio_);
        painter.fillRect(QRect(line.topLeft(), line.size().expandedTo({width, width})), toQColor(one.color));
    }
}

void Painting::paintDetails() {
    colors_ = DetailedStyle::colorsOf(subject_.tiles, surface_, subject_.colors);
    QPainter painter(&image_);
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < subject_.tiles.size(); ++i) {
        const TreemapTile &tile = subject_.tiles[i];
        open.resize(static_cast<std::size_t>(tile.depth));
        if (standsBack(tile))
            colors_[i] =
                DetailedStyle::dimmed(colors_[i], open.empty() ? surface_.background : colors_[open.back()]);
        fillFlat(painter, pixelsOf(tile.rect, devicePixelRatio_), toQColor(colors_[i]), devicePixelRatio_);
        open.push_back(i);
    }
}

void Painting::writeLabels(Qt::LayoutDirection direction) const {
    QPainter painter(&image_);
    painter.scale(devicePixelRatio_, devicePixelRatio_);
    painter.setLayoutDirection(direction);
    TreemapLabels labels(painter);
    for (std::size_t i = 0; i < subject_.tiles.size(); ++i)
        writeLabel(labels, subject_.tiles[i], toQColor(Contrast::readableOn(colors_[i])));
    writeRemarks(labels);
}

void Painting::writeLabel(TreemapLabels &labels, const TreemapTile &tile, const QColor &color) const {
    if (tile.isOpen()) {
        const Rect heading = DetailedTreemap::heading(tile, Type::scale());
        labels.writeLine(heading, displayedName(*tile.node),
                         DetailedStyle::hasSize(heading, Type::scale())
                             ? text(TreemapStyle::sizeText(*tile.node))
                             : QString(),
                         color);
    } else if (TreemapStyle::hasLabel(tile.rect, Type::scale())) {
        labels.writeTwoLines(tile.rect, displayedName(*tile.node), text(TreemapStyle::sizeText(*tile.node)),
                             color);
    } else if (subject_.isDetailed && DetailedStyle::hasName(tile.rect, Type::scale())) {
        labels.writeLine(tile.rect, displayedName(*tile.node), {}, color);
    }
}

/// Tells how many items are too small for a tile.
void Painting::writeRemarks(TreemapLabels &labels) const {
    for (const DetailedTreemap::SmallerItems &one : subject_.smaller)
        if (DetailedStyle::hasName(one.rect, Type::scale())) {
            const QColor color = one.folder == DetailedTreemap::wholeMap
                                     ? remarks_
                                     : toQColor(Contrast::readableOn(colors_[one.folder]));
            labels.writeRemark(one.rect, u"%1 smaller items"_s.arg(text(Fmt::count(one.count))), color);
        }
}

} // namespace

QPixmap TreemapPicture::of(const Subject &subject, QSize size, const Theme &theme, qreal devicePixelRatio,
                           Qt::LayoutDirection direction) {
    QImage image((QSizeF(size) * devicePixelRatio).toSize(), QImage::Format_RGB32);
    image.fill(theme.card);
    Painting painting(image, subject, theme, devicePixelRatio);
    if (subject.isDetailed)
        painting.paintDetails();
    else
        painting.paintTiles();
    painting.writeLabels(direction);
    QPixmap picture = QPixmap::fromImage(std::move(image));
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

TreemapStyle::Surface TreemapPicture::surface(const Theme &theme) {
    return {toColor(theme.card), toColor(theme.secondaryText)};
}

QRectF TreemapPicture::drawnRect(const Rect &tile, qreal devicePixelRatio) {
    const QRectF pixels = pixelsOf(tile, devicePixelRatio);
    return {pixels.topLeft() / devicePixelRatio, pixels.size() / devicePixelRatio};
}

void TreemapPicture::drawFrame(QPainter &painter, const QRectF &rect, qreal width, const QColor &color) {
    QPainterPath frame;
    frame.addRoundedRect(rect, TreemapStyle::cornerRadius, TreemapStyle::cornerRadius);
    const QRectF inner = rect.adjusted(width, width, -width, -width);
    const qreal innerRadius = std::max(0.0, TreemapStyle::cornerRadius - width);
    if (inner.isValid())
        frame.addRoundedRect(inner, innerRadius, innerRadius);
    painter.fillPath(frame, color);
}

} // namespace brimvale
