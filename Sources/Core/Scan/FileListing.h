#pragma once

#include <functional>
#include <string>
#include <vector>

namespace brimvale {

/// A file or symbolic link somewhere inside a folder.
struct ListedFile {
    std::string path; ///< relative to that folder; empty where the place asked for is no folder itself
    bool isLink = false;
};

/// What a place holds, with everything below it.
struct FileListing {
    std::vector<ListedFile> files;       ///< regular files and symbolic links, sorted by path
    std::vector<std::string> unreadable; ///< folders not listed whole, and entries that hide what they are
};

/// Lists what the folder at an absolute path holds, or the file or link there by itself. No link is followed.
/// What is neither file nor link nor folder is left out. After `isCancelled` answers true, what was found
/// until then.
[[nodiscard]] FileListing listFiles(const std::string &path, const std::function<bool()> &isCancelled);

} // namespace brimvale
