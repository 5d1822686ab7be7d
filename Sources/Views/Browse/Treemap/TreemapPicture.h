#pragma once

#include "Core/Treemap/Treemap.h"
#include "Views/Components/Theme.h"

#include <QPainter>
#include <QPixmap>
#include <QRectF>
#include <QSize>
#include <span>

namespace brimvale {

/// The picture of a treemap without any selection: its tiles on a card. Every edge is between two pixels, at
/// any device pixel ratio.
namespace TreemapPicture {

/// The picture of `tiles` in a rectangle of `size` points at the origin. Labels are at the start of lines in
/// `direction`.
[[nodiscard]] QPixmap of(std::span<const TreemapTile> tiles, QSize size, const Theme &theme,
                         qreal devicePixelRatio, Qt::LayoutDirection direction);

/// The drawn rectangle of a tile: each edge moves to the nearest place between two pixels.
[[nodiscard]] QRectF drawnRect(const Rect &tile, qreal devicePixelRatio);

/// Draws a frame of this width inside the edge of a tile drawn at `rect`. A tile thinner than its frame is
/// filled.
void drawFrame(QPainter &painter, const QRectF &rect, qreal width, const QColor &color);

} // namespace TreemapPicture

} // namespace brimvale
