#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace brimvale {

/// Paints a rounded bar that is filled to a share of 0 to 1. A share above 0 fills two points at least, so
/// that it can be told from nothing.
void paintShareBar(QPainter &painter, const QRectF &bar, double share, const QColor &track,
                   const QColor &fill);

} // namespace brimvale
