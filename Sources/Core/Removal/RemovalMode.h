#pragma once

#include <array>
#include <string_view>

namespace brimvale {

/// The ways to remove something.
enum class RemovalMode { trash, deleteNow };

/// Every mode, in the order of the menus; the first is the default.
inline constexpr std::array allRemovalModes = {RemovalMode::trash, RemovalMode::deleteNow};

/// The mode's title in a menu.
[[nodiscard]] constexpr std::string_view title(RemovalMode mode) {
    return mode == RemovalMode::trash ? "Move to Trash" : "Delete immediately";
}

} // namespace brimvale
