#pragma once

#include <QFont>
#include <QRect>
#include <QString>

class QPainter;

namespace brimvale {

/// Draws a size such as "1.6 GB" at the right end of `place`, with the painter's font, so that the decimal
/// points and the units of all sizes in a column are below one another.
void drawAlignedSize(QPainter &painter, const QRect &place, const QString &size);

/// The width of the widest size that is drawn like this.
[[nodiscard]] int widestSize(const QFont &font);

} // namespace brimvale
