#pragma once

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
    std::string path;                   ///< as it was given; of a folder the standardised form
    std::optional<FileIdentity> folder; ///< of a folder that is to be walked
    std::int64_t bytes = 0;             ///< of a file its allocation; of a folder nothing yet
    std::vector<std::size_t> groups;    ///< those that it was added for, once for each time

    NestedItem *outer = nullptr;         ///< the innermost item whose walk may come by this one
    std::vector<FileIdentity> ancestors; ///< the folders around this one, from the outermost item inwards

    // What the run that measures keeps here, under its lock:
    std::int64_t open = 1; ///< folders not yet read, and items inside not yet finished
    bool isMet = false;    ///< the walk of `outer` has come by
    bool isFinished = false;
    bool needsWalkOfItsOwn = false; ///< its bytes are not what it would have alone
};

/// The items of one run, each distinct one once, and which lies in which. An item lies in another one when
/// plain folders on the same device lead from there to it: so far only can a walk of that one come.
class NestedItems {
public:
    explicit NestedItems(const SkipList &skipped) : skipped_(skipped) {}

    /// Adds a path for a group, and looks at it if it is new and there is still time. Answers where it now
    /// is, for good.
    NestedItem &add(const std::string &path, std::size_t group, bool isTimeLeft);

    /// Finds out which lies in which, once all are added.
    void nest();

    /// In the order in which they were added.
    [[nodiscard]] const std::vector<std::unique_ptr<NestedItem>> &all() const { return items_; }

    /// The item that the folder `name` is, where it lies in another item; else null.
    [[nodiscard]] NestedItem *inner(const std::string &folderPath, std::string_view name) const;

private:
    [[nodiscard]] NestedItem *outerItemOf(const NestedItem &item) const;
    [[nodiscard]] bool findAncestors(NestedItem &item, const NestedItem &outer);
    [[nodiscard]] std::optional<FileStatus> statusOf(const std::string &folder);

    const SkipList &skipped_;
    std::vector<std::unique_ptr<NestedItem>> items_;
    std::unordered_map<std::string, NestedItem *> byPath_; ///< by every path given, and every item's
    std::unordered_set<std::string_view> innerNames_;      ///< last components of the items inside others
    std::unordered_map<std::string, std::optional<FileStatus>> statuses_; ///< of folders between two items
};

} // namespace brimvale
