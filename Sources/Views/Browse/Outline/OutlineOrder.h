#pragma once

#include "Core/Scan/FSNode.h"

#include <cstdint>
#include <vector>

namespace brimvale {

/// The order of the rows within each folder of an outline.
struct OutlineOrder {
    /// The figure to compare; null for the names, which are sorted by the rules of the user's language,
    /// ignoring case, with numbers by value.
    std::int64_t FSNode::*figure = &FSNode::size;
    bool isFalling = true;

    friend bool operator==(const OutlineOrder &, const OutlineOrder &) = default;

    /// Sorts siblings; equal ones keep their order. In a very large folder, names are compared by bytes to be
    /// fast enough, still ignoring the case of ASCII letters, and with numbers by value.
    void sort(std::vector<FSNode *> &nodes) const;

    /// Whether the current figures allow `first` before `second`; always true for names, which never change.
    [[nodiscard]] bool allows(const FSNode &first, const FSNode &second) const;
};

} // namespace brimvale
