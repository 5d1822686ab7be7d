#pragma once

#include "Base/FileURL.h"

#include <optional>
#include <vector>

namespace brimvale {

/// A user's folders for documents, pictures and so on, from the system's settings.
struct UserDirectories {
    std::optional<FileURL> documents; ///< nothing where the settings have none
    std::vector<FileURL> all;         ///< each once; those of every settings file that may be in force
};

/// The folders of the user with this home; they need not exist. Folders that the settings leave out or set to
/// the home itself are missing. Reads the settings on each call. Never fails or blocks.
[[nodiscard]] UserDirectories userDirectories(const FileURL &home);

} // namespace brimvale
