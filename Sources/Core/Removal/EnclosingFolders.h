#pragma once

#include "Base/FileURL.h"

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace brimvale {

/// Answers what lies in folders of a set, at any depth. Fast for many items of few folders.
class EnclosingFolders {
public:
    /// The set must outlive this, unchanged.
    explicit EnclosingFolders(const std::unordered_set<FileURL> &folders) : folders_(folders) {}

    /// Whether the item lies in one of them; an item of the set does not lie in itself.
    [[nodiscard]] bool enclose(const FileURL &item) { return areOrEnclose(item.parent()); }

private:
    [[nodiscard]] bool areOrEnclose(const FileURL &folder);

    const std::unordered_set<FileURL> &folders_;
    std::unordered_map<std::string, bool> known_; ///< the answers so far, by the folder's path
};

} // namespace brimvale
