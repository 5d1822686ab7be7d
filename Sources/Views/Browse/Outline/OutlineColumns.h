#pragma once

#include "Core/Scan/FSNode.h"

#include <QString>
#include <cstdint>
#include <span>

namespace brimvale {

/// One column of an outline.
struct OutlineColumn {
    /// How a cell is drawn: the name with its icon, a figure, a size, words, or the share of the parent as
    /// the filled part of a bar.
    enum class Drawing { name, figure, size, words, bar };

    /// In points. A column gets its minimum width before any less important column is shown.
    struct Width {
        int least;
        int most;
    };

    QString title;
    QString menuTitle; ///< in the menu that chooses columns
    Drawing drawing;
    QString (*text)(const FSNode &node);        ///< the text of a cell; null if others have to find it
    std::int64_t (*figure)(const FSNode &node); ///< the figure to sort by; null for the names, and for none
    Width (*width)(const FSNode &root);         ///< in the tree with this root; asked when the font is known
    int importance;                             ///< narrow outlines leave out the least important columns
    bool isUsual;                               ///< shown until the user chooses
    bool isQuiet;                               ///< drawn in a secondary colour
    bool isOfComparison = false;                ///< there only while an earlier scan is compared with

    [[nodiscard]] bool isRight() const { return drawing == Drawing::figure || drawing == Drawing::size; }
    [[nodiscard]] Qt::Alignment alignment() const {
        return (isRight() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    }
    /// The order after a first click on the header: the largest first, but names from A to Z.
    [[nodiscard]] Qt::SortOrder firstOrder() const {
        return figure == nullptr && !isOfComparison ? Qt::AscendingOrder : Qt::DescendingOrder;
    }
    /// What is not known of every node cannot be sorted by.
    [[nodiscard]] bool isSortable() const { return text != nullptr || isOfComparison; }
};

/// The columns, from left to right. The names come first.
[[nodiscard]] std::span<const OutlineColumn> outlineColumns();

/// The node's share of the size of its parent, 0 to 1; 0 if that is smaller than a byte.
[[nodiscard]] double shareOfParent(const FSNode &node);

/// The share in percent: "38.2%".
[[nodiscard]] QString percentText(const FSNode &node);

/// How long ago a node was changed; empty if that is not known.
[[nodiscard]] QString modifiedText(const FSNode &node);

} // namespace brimvale
