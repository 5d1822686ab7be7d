#pragma once

#include "Core/Treemap/Squarify.h"
#include "Views/Browse/Treemap/LabelFont.h"

#include <QColor>
#include <QRectF>
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
    enum class Side { left, start, end };

    /// Words that fit into their line, at one side of it.
    struct Text {
        const LabelFont &font;
        const QString &words;
        Side side;
    };
    void write(const Text &text, const QRectF &line, qreal baseline, const Rect &edge);
    [[nodiscard]] static qreal middleBaseline(const QRectF &area, const LabelFont &font);

    QPainter &painter_;
    const LabelFont nameFont_;
    const LabelFont sizeFont_;
};

} // namespace brimvale
