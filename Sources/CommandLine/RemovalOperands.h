#pragma once

#include "Base/FileURL.h"

#include <optional>
#include <span>
#include <vector>

namespace brimvale::commandLine {

/// What the paths on the command line ask to remove.
struct RemovalOperands {
    std::vector<FileURL> urls;     ///< in their order, as they were typed but absolute
    std::vector<FileURL> admitted; ///< those of them that the guards let pass

    /// Reads the paths. One that names the same item as another that is let pass, or an item in it, is left
    /// out: it goes with that one. Nothing when a path cannot be resolved, which is told on standard error.
    [[nodiscard]] static std::optional<RemovalOperands> from(std::span<const char *const> typed);
};

} // namespace brimvale::commandLine
