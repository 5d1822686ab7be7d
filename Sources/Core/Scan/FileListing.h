#pragma once

#include "Base/StopFlag.h"

#include <string>
#include <vector>

namespace brimvale {

/// A file or symbolic link at any depth in a folder.
struct ListedFile {
    std::string path; ///< relative to that folder; empty if the listed place is no folder
    bool isLink = false;
};

/// The files of a place, at any depth.
struct FileListing {
    std::vector<ListedFile> files;       ///< regular files and symbolic links, sorted by path
    std::vector<std::string> unreadable; ///< folders not fully listed, and entries of unknown kind
};

/// Lists what the folder at an absolute path holds, or the file or link there by itself. No link is followed.
/// What is neither file nor link nor folder is left out. Once `cancelled` is set, what was found
/// until then.
[[nodiscard]] FileListing listFiles(const std::string &path, const StopFlag &cancelled);

} // namespace brimvale
