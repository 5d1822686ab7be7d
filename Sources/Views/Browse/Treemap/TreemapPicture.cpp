#include "Views/Browse/Treemap/TreemapPicture.h"

#include "Core/Treemap/DetailedStyle.h"
#include "Core/Treemap/TreemapStyle.h"
#include "Views/Browse/Treemap/TreemapLabels.h"
#include "Views/Components/Contrast.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

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

/// What tells the growth of tiles that are too small for a mark, besides their colour.
Qt::BrushStyle patternOf(MapGrowth growth) {
    switch (growth) {
    case MapGrowth::grew:
        return Qt::BDiagPattern;
    case MapGrowth::appeared:
        return Qt::CrossPattern;
    case MapGrowth::moved:
        return Qt::HorPattern;
    case MapGrowth::shrank:
        return Qt::FDiagPattern;
    case MapGrowth::unchanged:
        break;
    }
    return Qt::NoBrush;
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
    void paintPattern(QPainter &painter, const QRect &pixels, const TreemapTile &tile) const;
    [[nodiscard]] bool hasWords(const TreemapTile &tile) const;
    void writeLabel(TreemapLabels &labels, const TreemapTile &tile, const QColor &color) const;
    void writeRemarks(TreemapLabels &labels) const;
    [[nodiscard]] QString nameOf(const FSNode &node) const;

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
        const QRect pixels = pixelsOf(tile.rect, devicePixelRatio_);
        fillFlat(painter, pixels, toQColor(colors_[i]), devicePixelRatio_);
        if (subject_.colors.by == MapColors::By::growth && !tile.isOpen() &&
            !DetailedStyle::hasName(tile.rect, Type::scale()))
            paintPattern(painter, pixels, tile);
        open.push_back(i);
    }
}

void Painting::paintPattern(QPainter &painter, const QRect &pixels, const TreemapTile &tile) const {
    constexpr float patternOpacity = 0.45F;
    QColor lines =
        toQColor(Contrast::readableOn(colors_[static_cast<std::size_t>(&tile - subject_.tiles.data())]));
    lines.setAlphaF(patternOpacity);
    painter.fillRect(pixels.adjusted(0, 0, -1, -1),
                     QBrush(lines, patternOf(subject_.colors.growthOf(*tile.node))));
}

void Painting::writeLabels(Qt::LayoutDirection direction) const {
    QPainter painter(&image_);
    painter.scale(devicePixelRatio_, devicePixelRatio_);
    painter.setLayoutDirection(direction);
    TreemapLabels labels(painter);
    for (std::size_t i = 0; i < subject_.tiles.size(); ++i)
        if (const TreemapTile &tile = subject_.tiles[i]; hasWords(tile))
            writeLabel(labels, tile, toQColor(Contrast::readableOn(colors_[i])));
    writeRemarks(labels);
}

/// With its mark.
QString Painting::nameOf(const FSNode &node) const {
    return text(std::string(subject_.colors.mark(node))) + displayedName(node);
}

/// The colour of words takes some time to find, so most tiles have none.
bool Painting::hasWords(const TreemapTile &tile) const {
    return tile.isOpen() || TreemapStyle::hasLabel(tile.rect, Type::scale()) ||
           (subject_.isDetailed && DetailedStyle::hasName(tile.rect, Type::scale()));
}

void Painting::writeLabel(TreemapLabels &labels, const TreemapTile &tile, const QColor &color) const {
    if (tile.isOpen()) {
        const Rect heading = DetailedTreemap::heading(tile, Type::scale());
        labels.writeLine(heading, nameOf(*tile.node),
                         DetailedStyle::hasSize(heading, Type::scale())
                             ? text(TreemapStyle::sizeText(*tile.node))
                             : QString(),
                         color);
    } else if (TreemapStyle::hasLabel(tile.rect, Type::scale())) {
        labels.writeTwoLines(tile.rect, nameOf(*tile.node), text(TreemapStyle::sizeText(*tile.node)), color);
    } else {
        labels.writeLine(tile.rect, nameOf(*tile.node), {}, color);
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

QImage TreemapPicture::of(const Subject &subject, const Look &look, std::vector<std::uint32_t> &pixels) {
    const QSize size = (QSizeF(look.size) * look.devicePixelRatio).toSize();
    const auto needed = static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
    if (pixels.size() < needed)
        pixels.resize(needed + needed / 8); // for a window that is being enlarged
    QImage image(reinterpret_cast<uchar *>(pixels.data()), size.width(), size.height(),
                 size.width() * qsizetype{sizeof(std::uint32_t)}, QImage::Format_RGB32);
    image.fill(look.theme.card);
    Painting painting(image, subject, look.theme, look.devicePixelRatio);
    if (subject.isDetailed)
        painting.paintDetails();
    else
        painting.paintTiles();
    painting.writeLabels(look.direction);
    image.setDevicePixelRatio(look.devicePixelRatio);
    return image;
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
