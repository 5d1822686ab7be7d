#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <string_view>

namespace brimvale {

/// What keeps an item from being removed, besides ordinary permissions.
enum class RemovalObstacle : std::uint8_t {
    none,
    locked,            ///< by its owner; the administrator's removal unlocks it
    immutable,         ///< the item is marked so; nobody can remove it before the mark is cleared
    appendOnly,        ///< the same for a file that can only grow
    immutableParent,   ///< its parent folder is marked so: nothing in it can be removed
    appendOnlyParent,  ///< the same for a folder that only takes new entries
    restricted,        ///< the system protects it, even from the administrator
    privacyProtection, ///< the system asks the user which programs may reach it
    appManagement,     ///< an application; the system asks the user which programs may change applications
};

/// What keeps this item or entry, whose removal was not permitted, from being removed, as far as its flags
/// and those of its parent folder tell. Flags deeper inside a folder are not looked for.
[[nodiscard]] RemovalObstacle removalObstacle(const FileURL &item);

/// The command, without its operand, with which an administrator clears the mark; empty where none helps.
[[nodiscard]] std::string_view commandAgainst(RemovalObstacle obstacle);

} // namespace brimvale
