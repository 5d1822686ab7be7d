#pragma once

#include "Base/StopFlag.h"
#include "Platform/EntryRecord.h"

#include <string>
#include <vector>

namespace brimvale {

/// An entry at any depth in a folder.
struct ListedEntry {
    std::string path; ///< relative to that folder; empty for the folder itself
    EntryRecord record;
};

/// The entries of a place, at any depth.
struct FileListing {
    std::vector<ListedEntry> entries;    ///< of every kind, sorted by path; first the listed place itself
    std::vector<std::string> unreadable; ///< folders not fully listed, and entries of unknown kind

    /// The entry with that relative path; null if there is none.
    [[nodiscard]] const ListedEntry *find(const std::string &path) const;
};

/// Lists the place at an absolute path with everything below it; nothing where it is not there. No link is
/// followed. Once `cancelled` is set, what was found until then.
[[nodiscard]] FileListing listFiles(const std::string &path, const StopFlag &cancelled);

} // namespace brimvale
