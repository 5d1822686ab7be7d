#pragma once

#include "Core/Scan/MeasuredItem.h"
#include "Core/Scan/ScanOptions.h"
#include "Platform/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace brimvale {

/// A file or folder that is measured together with others.
struct NestedItem {
    std::string path;                   ///< as given; for a folder, standardised
    std::optional<FileIdentity> folder; ///< for a folder that needs a walk
    MeasuredItem measured;              ///< of a folder without bytes at first
    std::vector<std::size_t> groups;    ///< the groups it was added for, once each time

    NestedItem *outer = nullptr;         ///< the innermost item whose walk may reach this one
    std::vector<FileIdentity> ancestors; ///< its ancestors, from the outermost item inwards

    // State of the run that measures, protected by its lock:
    std::int64_t open = 1; ///< unread folders, and unfinished items inside it
    bool isMet = false;    ///< the walk of `outer` has reached it
    bool isFinished = false;
    bool needsWalkOfItsOwn = false; ///< its shared result differs from a walk of its own
};

/// The distinct items of one run, and which contains which. An item is inside another one when plain folders
/// on the same device lead to it: only those can a walk pass.
class NestedItems {
public:
    explicit NestedItems(const SkipList &skipped) : skipped_(skipped) {}

    /// Adds a path for a group, and reads its status if it is new and the run is not cancelled. Returns the
    /// item, which stays in place.
    NestedItem &add(const std::string &path, std::size_t group, bool isTimeLeft);

    /// Finds out which item contains which; call it once all are added.
    void nest();

    /// In the order in which they were added.
    [[nodiscard]] const std::vector<std::unique_ptr<NestedItem>> &all() const { return items_; }

    /// The item for the folder `name`, if it is inside another item; otherwise null.
    [[nodiscard]] NestedItem *inner(const std::string &folderPath, std::string_view name) const;

private:
    [[nodiscard]] NestedItem *outerItemOf(const NestedItem &item) const;
    [[nodiscard]] bool findAncestors(NestedItem &item, const NestedItem &outer);
    [[nodiscard]] std::optional<FileStatus> statusOf(const std::string &folder);

    const SkipList &skipped_;
    std::vector<std::unique_ptr<NestedItem>> items_;
    std::unordered_map<std::string, NestedItem *> byPath_; ///< by every given path and every item's path
    std::unordered_set<std::string_view> innerNames_;      ///< last components of the inner items
    std::unordered_map<std::string, std::optional<FileStatus>> statuses_; ///< of folders between two items
};

} // namespace brimvale
