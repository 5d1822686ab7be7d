#pragma once

#include "Core/Treemap/DetailedTreemap.h"
#include "Core/Treemap/MapColors.h"
#include "Core/Treemap/Treemap.h"
#include "Core/Treemap/TreemapStyle.h"
#include "Views/Components/Theme.h"

#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace brimvale {

/// The picture of a treemap without any selection: its tiles on a card. Every edge is between two pixels, at
/// any device pixel ratio.
namespace TreemapPicture {

/// What is drawn. With `isHighlighted`, closed tiles of other nodes stand back.
struct Subject {
    std::span<const TreemapTile> tiles;
    bool isDetailed = false;
    std::span<const DetailedTreemap::SmallerItems> smaller = {}; ///< of a detailed map
    std::function<bool(const FSNode &)> isHighlighted = {};
    MapColors colors = {}; ///< of a detailed map
};

/// How the picture is drawn: in a rectangle of `size` points at the origin, with labels at the start of lines
/// in `direction`.
struct Look {
    QSize size;
    const Theme &theme;
    qreal devicePixelRatio;
    Qt::LayoutDirection direction;
};

/// The picture, in these pixels, which must outlive it. They grow when needed, and are used again for the
/// next picture: new memory of this size costs as much time as painting.
[[nodiscard]] QImage of(const Subject &subject, const Look &look, std::vector<std::uint32_t> &pixels);

/// The surface that is drawn on, a card.
[[nodiscard]] TreemapStyle::Surface surface(const Theme &theme);

/// The drawn rectangle of a tile: each edge moves to the nearest place between two pixels.
[[nodiscard]] QRectF drawnRect(const Rect &tile, qreal devicePixelRatio);

/// Draws a frame of this width inside the edge of a tile drawn at `rect`. A tile thinner than its frame is
/// filled.
void drawFrame(QPainter &painter, const QRectF &rect, qreal width, const QColor &color);

} // namespace TreemapPicture

} // namespace brimvale
