#pragma once

#include "Core/Treemap/Squarify.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QString>

class QPainter;

namespace brimvale {

/// Writes the labels of one picture of a treemap, with a painter in points. A text that does not fit is
/// elided.
class TreemapLabels {
public:
    explicit TreemapLabels(QPainter &painter);

    /// A name over a size, at the top of a tile.
    void writeTwoLines(const Rect &tile, const QString &name, const QString &size, const QColor &color);

    /// A name at the start of a line and, unless it is empty, a size at its end.
    void writeLine(const Rect &line, const QString &name, const QString &size, const QColor &color);

    /// A remark in the middle of an area, if there is room for all of it.
    void writeRemark(const Rect &area, const QString &remark, const QColor &color);

private:
    QPainter &painter_;
    const QFont nameFont_;
    const QFont sizeFont_;
    const QFontMetricsF nameMetrics_;
    const QFontMetricsF sizeMetrics_;
};

} // namespace brimvale
