#pragma once

#include "Core/Scan/FSNode.h"

#include <cstdint>
#include <vector>

namespace brimvale {

/// The order of the rows within each folder of an outline.
struct OutlineOrder {
    /// What is compared; null for the names, as the user's language sorts, whatever the case, and numbers in
    /// them by their value.
    std::int64_t FSNode::*figure = &FSNode::size;
    bool isFalling = true;

    friend bool operator==(const OutlineOrder &, const OutlineOrder &) = default;

    /// Sorts siblings; equal ones keep their order. In a very large folder names are compared by their bytes
    /// (though still whatever the case of ASCII letters, and numbers by value), to be done in time.
    void sort(std::vector<FSNode *> &nodes) const;

    /// Whether `first` may stand before `second` as their figures are now; always so for names, which do not
    /// change.
    [[nodiscard]] bool allows(const FSNode &first, const FSNode &second) const;
};

} // namespace brimvale
