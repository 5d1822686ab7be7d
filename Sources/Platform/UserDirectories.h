#pragma once

#include "Base/FileURL.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A user's folders for documents, pictures and so on, from the system's settings.
struct UserDirectories {
    std::optional<FileURL> documents; ///< nothing where the settings have none
    std::vector<FileURL> all;         ///< each once; those of every settings file that may be in force
    /// What the settings in force say of each folder, by a key such as "XDG_MUSIC_DIR"; no folder where they
    /// say that there is none.
    std::map<std::string, std::optional<FileURL>, std::less<>> byKey = {};
};

/// The folders of the user with this home; they need not exist. Folders that the settings leave out or set to
/// the home itself are missing. Reads the settings on each call. Never fails or blocks.
[[nodiscard]] UserDirectories userDirectories(const FileURL &home);

} // namespace brimvale
