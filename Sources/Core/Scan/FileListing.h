#pragma once

#include "Base/StopFlag.h"

#include <string>
#include <vector>

namespace brimvale {

/// A file or symbolic link at any depth in a folder.
struct ListedFile {
    std::string path; ///< relative to that folder; empty if the listed path is not a folder
    bool isLink = false;
};

/// The files at a path, at any depth.
struct FileListing {
    std::vector<ListedFile> files;       ///< regular files and symbolic links, sorted by path
    std::vector<std::string> unreadable; ///< folders not fully listed, and entries of unknown kind
};

/// Lists the contents of the folder at an absolute path, or the single file or link there. No link is
/// followed. Entries that are neither files, links nor folders are left out. Once `cancelled` is set, returns
/// the files found so far.
[[nodiscard]] FileListing listFiles(const std::string &path, const StopFlag &cancelled);

} // namespace brimvale
