#pragma once

#include <array>
#include <string_view>

namespace brimvale {

/// How something is removed.
enum class RemovalMode { trash, deleteNow };

/// Every mode, in the order in which they are offered; the first is the one to begin with.
inline constexpr std::array allRemovalModes = {RemovalMode::trash, RemovalMode::deleteNow};

/// What the user reads for it in a list of modes.
[[nodiscard]] constexpr std::string_view title(RemovalMode mode) {
    return mode == RemovalMode::trash ? "Move to Trash" : "Delete immediately";
}

} // namespace brimvale
