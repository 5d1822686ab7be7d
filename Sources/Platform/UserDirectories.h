#pragma once

#include "Base/FileURL.h"

#include <optional>
#include <vector>

namespace brimvale {

/// The folders for a user's documents, pictures and the like, as the system's settings name them.
struct UserDirectories {
    std::optional<FileURL> documents; ///< nothing where the settings name none
    std::vector<FileURL> all;         ///< each once, documents included
};

/// The folders of the user whose home this is; they need not exist. What the settings do not name, or name
/// the home itself for, is left out. Reads the settings afresh. Never fails, and never waits.
[[nodiscard]] UserDirectories userDirectories(const FileURL &home);

} // namespace brimvale
