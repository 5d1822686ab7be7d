#pragma once

#include "Core/Scan/FileListing.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The path of the Messages database ("chat.db") in a backup, relative to the backup's folder: the one in the
/// fewest folders, so first an item itself, then one directly in an item. Only `items` (names in the folder)
/// are searched. An "Attachments" folder is never searched, because its files come from other people.
[[nodiscard]] std::optional<std::string> messagesDatabaseIn(const FileListing &backup,
                                                            const std::vector<std::string> &items);

} // namespace brimvale
