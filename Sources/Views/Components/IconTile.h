#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;

namespace brimvale {

/// Paints a white icon on a rounded tile of a colour, which is how storage categories are told apart.
void paintIconTile(QPainter &painter, const QRectF &tile, const QString &icon, const QColor &color);

} // namespace brimvale
