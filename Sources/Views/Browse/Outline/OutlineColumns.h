#pragma once

#include "Core/Scan/FSNode.h"

#include <QString>
#include <cstdint>
#include <span>

namespace brimvale {

/// One column of an outline.
struct OutlineColumn {
    /// How a cell is drawn: the name with its icon, a figure, or a figure as the filled part of a bar.
    enum class Drawing { name, figure, bar };

    /// In points. A column gets its minimum width before any less important column is shown.
    struct Width {
        int least;
        int most;
    };

    QString title;
    Drawing drawing;
    QString (*text)(const FSNode &node); ///< the text of a cell
    std::int64_t FSNode::*figure;        ///< the figure to sort by; null for the names
    Width (*width)();                    ///< asked when the font is known
    int importance;                      ///< narrow outlines leave out the least important columns
    bool isQuiet;                        ///< drawn in a secondary colour

    [[nodiscard]] Qt::Alignment alignment() const {
        return (drawing == Drawing::figure ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    }
    /// The order after a first click on the header: the largest first, but names from A to Z.
    [[nodiscard]] Qt::SortOrder firstOrder() const {
        return figure == nullptr ? Qt::AscendingOrder : Qt::DescendingOrder;
    }
};

/// The columns, from left to right. The names come first.
[[nodiscard]] std::span<const OutlineColumn> outlineColumns();

/// The node's share of the size of its parent, 0 to 1; 0 if that is smaller than a byte.
[[nodiscard]] double shareOfParent(const FSNode &node);

} // namespace brimvale
