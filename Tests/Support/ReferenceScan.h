#pragma once

#include "Core/Scan/FSNode.h"
#include "Core/Scan/ScanOptions.h"

#include <cstdint>
#include <string>

namespace brimvale::testing {

/// What a scan must find, found another way: one sequential traversal per top-level entry with the C
/// library's fts, on one thread, with a frame a folder. Cannot go deeper than fts can (paths of 64 KiB).
struct ReferenceScan {
    std::unique_ptr<FSNode> root; ///< not sorted
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t unreadable = 0;
};

[[nodiscard]] ReferenceScan referenceScan(const std::string &root, const ScanOptions &options);

/// A tree as text, one line a node, in order, with every figure and flag: equal trees give equal texts.
[[nodiscard]] std::string describe(const FSNode &root);

} // namespace brimvale::testing
