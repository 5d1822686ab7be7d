#pragma once

#include "Base/FileURL.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale::commandLine {

/// The items that the operands ask to remove.
struct RemovalOperands {
    std::vector<FileURL> urls;     ///< all of them, absolute, otherwise as typed and in that order
    std::vector<FileURL> admitted; ///< those that the guards allow

    /// Reads the paths. A path is left out if another allowed path names the same item or one of its
    /// ancestors. If a path cannot be resolved, reports that on standard error and returns nothing.
    [[nodiscard]] static std::optional<RemovalOperands> from(const std::vector<std::string> &given);
};

} // namespace brimvale::commandLine
