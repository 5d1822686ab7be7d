#pragma once

#include "Core/Treemap/Treemap.h"
#include "Views/Components/Theme.h"

#include <QPainter>
#include <QPixmap>
#include <QRectF>
#include <QSize>
#include <span>

namespace brimvale {

/// What a treemap looks like at rest: its tiles on a card, none of them selected. Every edge lies between two
/// pixels, on screens of any device pixel ratio.
namespace TreemapPicture {

/// The picture of `tiles`, which lie in a rectangle of `size` points at the origin, with its labels at the
/// start of lines that run in `direction`.
[[nodiscard]] QPixmap of(std::span<const TreemapTile> tiles, QSize size, const Theme &theme,
                         qreal devicePixelRatio, Qt::LayoutDirection direction);

/// Where a tile is drawn: its rectangle with each edge moved to the nearest one between two pixels.
[[nodiscard]] QRectF drawnRect(const Rect &tile, qreal devicePixelRatio);

/// Draws a frame of that width inside the edge of a tile that is drawn at `rect`. One that is thinner than
/// its frame is filled.
void drawFrame(QPainter &painter, const QRectF &rect, qreal width, const QColor &color);

} // namespace TreemapPicture

} // namespace brimvale
