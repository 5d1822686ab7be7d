#pragma once

#include "Base/FileURL.h"

#include <vector>

namespace brimvale {

/// The paths of items that have been removed. Answers quickly for many items, however many paths there are.
/// Compares bytes: paths are to be in the plain form that `FileURL::standardized` gives.
class GonePaths {
public:
    GonePaths() = default;
    explicit GonePaths(std::vector<FileURL> items);

    /// The same items, and those under the paths of their parents with links resolved, if the parents still
    /// exist: /private/var/x and /var/x are one item on a Mac. Other links to a parent are not found. Reads
    /// the disk.
    [[nodiscard]] static GonePaths throughLinks(const std::vector<FileURL> &items);

    void add(const GonePaths &others);

    [[nodiscard]] bool isEmpty() const { return outermost_.empty(); }

    /// Whether the item is one of those that are gone, or inside one.
    [[nodiscard]] bool contains(const FileURL &item) const;

    /// Whether something inside the folder, at any depth, is gone, but not the folder itself.
    [[nodiscard]] bool reachInto(const FileURL &folder) const;

    /// The paths that are not inside another one, each once, sorted so that what is inside a folder follows
    /// it.
    [[nodiscard]] const std::vector<FileURL> &outermost() const { return outermost_; }

private:
    std::vector<FileURL> outermost_;
};

} // namespace brimvale
