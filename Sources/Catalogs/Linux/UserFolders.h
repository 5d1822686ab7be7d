#pragma once

#include "Base/FileURL.h"

#include <string_view>
#include <vector>

namespace brimvale::linuxCatalog {

/// The folders for the user's own documents, pictures and the like: under their usual English names, and
/// under those that the user's settings (~/.config/user-dirs.dirs, which most desktops fill in the user's
/// language) give them. They need not exist.
[[nodiscard]] std::vector<FileURL> userFolders(const FileURL &home);

/// The folders that the text of such a settings file names, in its order. What it does not name as it should
/// is passed over.
[[nodiscard]] std::vector<FileURL> userFoldersNamedIn(std::string_view settings, const FileURL &home);

} // namespace brimvale::linuxCatalog
