#include "Views/Browse/Treemap/TreemapPicture.h"

#include "Core/Treemap/TreemapStyle.h"
#include "Views/Components/NodeName.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainterPath>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace brimvale {

namespace {

/// How far the shadow extends beyond a label.
constexpr qreal shadowReach = 2;

/// The radius of the shadow's blur, in pixels.
constexpr qreal shadowStep = 0.75;
static_assert(2 * shadowStep <= shadowReach);

QColor toQColor(const Color &color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

Color toColor(const QColor &color) {
    return {color.redF(), color.greenF(), color.blueF()};
}

/// A fill over an opaque colour. The result is opaque too, which is much faster to paint.
QColor over(const Color &background, const TreemapStyle::Fill &fill) {
    const auto mix = [&](double below, double above) { return below + (above - below) * fill.opacity; };
    return toQColor({mix(background.red, fill.color.red), mix(background.green, fill.color.green),
                     mix(background.blue, fill.color.blue)});
}

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

/// Blurs one byte per pixel in one direction: every pixel also gets a part of the pixels `distance` bytes
/// away on both sides. The sum grows, because thin letters would otherwise hardly have a shadow. The
/// outermost pixels must be empty, because beyond the end of a line the next one begins.
void spread(const QImage &from, QImage &to, qsizetype distance) {
    constexpr int weight = 154; // of 256
    const uchar *source = from.constBits();
    uchar *target = to.bits();
    const qsizetype end = from.sizeInBytes() - distance;
    for (qsizetype i = distance; i < end; ++i)
        target[i] = static_cast<uchar>(
            std::min(255, source[i] + ((source[i - distance] + source[i + distance]) * weight >> 8)));
}

/// Draws the black shadow of `letters` (premultiplied, in lines of whole words) below them.
void addShadow(QImage &letters, int blur) {
    const QImage shape = letters.convertToFormat(QImage::Format_Alpha8);
    QImage along = shape.copy();
    QImage shadow = shape.copy();
    spread(shape, along, blur);
    spread(along, shadow, blur * shape.bytesPerLine());
    constexpr int opacity = static_cast<int>(TreemapStyle::shadowOpacity * 65'536 / 255);
    const int width = letters.width();
    for (int y = 0; y < letters.height(); ++y) {
        const uchar *black = shadow.constScanLine(y);
        auto *pixel = reinterpret_cast<QRgb *>(letters.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int uncovered = 255 - qAlpha(pixel[x]);
            pixel[x] += static_cast<QRgb>(black[x] * uncovered * opacity >> 16) << 24;
        }
    }
}

/// Draws the labels of one picture, with a painter in pixels.
class LabelPainter {
public:
    LabelPainter(QPainter &painter, qreal devicePixelRatio)
        : painter_(painter), devicePixelRatio_(devicePixelRatio) {}

    void draw(const FSNode &node, const Rect &tile);

private:
    struct Lines {
        QString name;
        QString size;
    };

    [[nodiscard]] QImage picture(const QSizeF &size, const Lines &lines) const;

    QPainter &painter_;
    const qreal devicePixelRatio_;
    const QFont nameFont_ = Type::font(Type::Size::caption, QFont::Medium);
    const QFont sizeFont_ = Type::font(Type::Size::caption);
    const QFontMetricsF nameMetrics_{nameFont_};
    const QFontMetricsF sizeMetrics_{sizeFont_};
};

void LabelPainter::draw(const FSNode &node, const Rect &tile) {
    const Rect area = TreemapStyle::labelArea(tile, nameMetrics_.height() + sizeMetrics_.height());
    const QString size = QString::fromStdString(TreemapStyle::sizeText(node));
    const Lines lines{nameMetrics_.elidedText(displayedName(node), Qt::ElideMiddle, area.width),
                      sizeMetrics_.elidedText(size, Qt::ElideRight, area.width)};
    const double width =
        std::min(area.width, std::ceil(std::max(nameMetrics_.horizontalAdvance(lines.name),
                                                sizeMetrics_.horizontalAdvance(lines.size))));
    const bool isMirrored = painter_.layoutDirection() == Qt::RightToLeft;
    const QPointF start(isMirrored ? area.x + area.width - width : area.x, area.y);
    const QPointF corner = (start - QPointF(shadowReach, shadowReach)) * devicePixelRatio_;
    painter_.drawImage(corner.toPoint(), picture({width, area.height}, lines));
}

/// Two lines in white with their shadow, which extends them by `shadowReach` on every side.
QImage LabelPainter::picture(const QSizeF &size, const Lines &lines) const {
    const QSizeF whole = size + QSizeF(2 * shadowReach, 2 * shadowReach);
    const int width = qCeil(whole.width() * devicePixelRatio_);
    QImage picture((width + 3) / 4 * 4, qCeil(whole.height() * devicePixelRatio_),
                   QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.scale(devicePixelRatio_, devicePixelRatio_);
    painter.setLayoutDirection(painter_.layoutDirection());
    painter.setPen(Qt::white);
    const QRectF area(QPointF(shadowReach, shadowReach), size);
    // Some scripts are higher than the lines, and the blur must not reach the edge.
    painter.setClipRect(area.adjusted(-shadowStep, -shadowStep, shadowStep, shadowStep));
    constexpr int line = Qt::TextSingleLine | Qt::TextDontClip;
    painter.setFont(nameFont_);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignTop | line, lines.name);
    painter.setFont(sizeFont_);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignBottom | line, lines.size);
    painter.end();
    addShadow(picture, std::max(1, qRound(shadowStep * devicePixelRatio_)));
    return picture;
}

} // namespace

QPixmap TreemapPicture::of(std::span<const TreemapTile> tiles, QSize size, const Theme &theme,
                           qreal devicePixelRatio, Qt::LayoutDirection direction) {
    QImage image((QSizeF(size) * devicePixelRatio).toSize(), QImage::Format_RGB32);
    image.fill(theme.card);
    const TreemapStyle::Surface surface = {toColor(theme.card), toColor(theme.secondaryText)};
    for (const TreemapTile &tile : tiles)
        paintTile(image, pixelsOf(tile.rect, devicePixelRatio),
                  over(surface.background, TreemapStyle::fill(*tile.node, surface)), devicePixelRatio);
    QPainter painter(&image);
    painter.setLayoutDirection(direction);
    LabelPainter labels(painter, devicePixelRatio);
    for (const TreemapTile &tile : tiles)
        if (TreemapStyle::hasLabel(tile.rect))
            labels.draw(*tile.node, tile.rect);
    painter.end();
    QPixmap picture = QPixmap::fromImage(std::move(image));
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
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
