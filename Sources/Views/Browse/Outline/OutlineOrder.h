#pragma once

#include "Core/Export/Comparison.h"
#include "Core/Scan/FSNode.h"

#include <cstdint>
#include <span>
#include <vector>

namespace brimvale {

[[nodiscard]] inline std::int64_t allocatedSize(const FSNode &node) {
    return node.size;
}

/// The order of the rows within each folder of an outline.
struct OutlineOrder {
    using Figure = std::int64_t (*)(const FSNode &node);

    /// The figure to compare; null for the names, which are sorted by the rules of the user's language,
    /// ignoring case, with numbers by value.
    Figure figure = allocatedSize;
    bool isFalling = true;
    /// If set, growth is compared instead.
    const TreeComparison *comparison = nullptr;

    friend bool operator==(const OutlineOrder &, const OutlineOrder &) = default;

    /// Sorts siblings. Those with equal figures are sorted by name from A to Z; those with equal names keep
    /// their order. In a very large folder, names are compared by bytes to be fast enough, still ignoring the
    /// case of ASCII letters, and with numbers by value.
    void sort(std::vector<FSNode *> &nodes) const;

    /// Whether the current figures allow `first` before `second`; always true for names, which never change,
    /// and for equal figures.
    [[nodiscard]] bool allows(const FSNode &first, const FSNode &second) const;

private:
    [[nodiscard]] bool isByName() const { return figure == nullptr && comparison == nullptr; }
    [[nodiscard]] std::int64_t figureOf(const FSNode &node) const;
    void sortByNumber(std::span<FSNode *> nodes) const;
};

} // namespace brimvale
