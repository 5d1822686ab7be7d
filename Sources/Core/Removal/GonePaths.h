#pragma once

#include "Base/FileURL.h"
#include "Platform/OpenedItem.h"

#include <optional>
#include <vector>

namespace brimvale {

/// The paths of removed items. Lookups stay fast for many paths. Compares bytes, so paths must be in the form
/// that `FileURL::standardized` returns.
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

    /// Whether the item or one of its ancestors is gone.
    [[nodiscard]] bool contains(const FileURL &item) const;

    /// Whether a descendant of the folder is gone, but not the folder itself.
    [[nodiscard]] bool reachInto(const FileURL &folder) const;

    /// Whether a row is gone that shows the item at this path. The path may lead through links, but the pin
    /// has the path without them.
    [[nodiscard]] bool contains(const FileURL &item, const std::optional<ItemPin> &pin) const;

    /// Whether a row shows one of the items, or an item inside or around one.
    [[nodiscard]] bool touch(const FileURL &item, const std::optional<ItemPin> &pin) const;

    /// The paths without those inside another one, each once. Sorted so that the contents of a folder follow
    /// it.
    [[nodiscard]] const std::vector<FileURL> &outermost() const { return outermost_; }

private:
    std::vector<FileURL> outermost_;
};

} // namespace brimvale
