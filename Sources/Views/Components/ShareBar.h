#pragma once

#include <QColor>
#include <QRect>

class QPainter;

namespace brimvale {

inline constexpr int shareBarHeight = 6;

/// Paints a rounded bar along the middle of a cell, filled to a share of 0 to 1; a larger one counts as 1. A
/// share above 0 fills two points at least, so that it can be told from nothing.
void paintShareBar(QPainter &painter, const QRect &cell, double share, const QColor &track,
                   const QColor &fill);

} // namespace brimvale
