#pragma once

#include "Base/Date.h"
#include "Core/Scan/SkipReason.h"
#include "Platform/Host.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace brimvale {

using PathSet = std::unordered_set<std::string>;

/// Options for measuring a folder.
struct ScanOptions {
    /// Files with at least this many allocated bytes get a node of their own; smaller ones share their
    /// folder's aggregate.
    std::int64_t minimumNodeSize = 1'048'576;
    /// False: a walk stays on the device where it started.
    bool crossesMountPoints = false;
    /// Folders that are never entered, as absolute standardised paths.
    PathSet skippedPaths;
    /// The skipped folders that belong to cloud providers.
    PathSet cloudProviderPaths;

    /// Folders that are not entered, and of which not even the status is read, unless a walk begins there.
    std::unordered_map<std::string, SkipReason> unseenPaths = {};

    /// The ages of files count from this moment; nothing for that of the scan.
    std::optional<Date> moment = {};

    /// The standard options of a scan for `host`, with everything to skip.
    [[nodiscard]] static ScanOptions standard(const Host &host = Host::current());

    /// The paths in the host's catalog, and the current mount points of file systems without storage.
    [[nodiscard]] static PathSet defaultSkippedPaths(const Host &host = Host::current());

    /// The cloud providers' folders in the host's home.
    [[nodiscard]] static PathSet cloudProviderRoots(const Host &host = Host::current());

    /// Mounts that another machine or a program answers for, and those that show what is counted elsewhere.
    /// Where the home is in such a mount, that is not one.
    [[nodiscard]] static std::unordered_map<std::string, SkipReason>
    currentUnseenPaths(const Host &host = Host::current());
};

/// Tells quickly whether a folder found in a walk is skipped: composes its path only if its name is the last
/// component of a skipped path.
class SkipList {
public:
    explicit SkipList(const ScanOptions &options);
    SkipList(const SkipList &) = delete;
    SkipList &operator=(const SkipList &) = delete;

    [[nodiscard]] bool contains(const std::string &path) const { return paths_.contains(path); }
    [[nodiscard]] bool contains(const std::string &folderPath, std::string_view name) const;

    /// Whether anything directly in this folder is left out unseen, and why an entry of it or a path is.
    [[nodiscard]] bool hasUnseen(const std::string &folderPath) const;
    [[nodiscard]] std::optional<SkipReason> unseen(const std::string &path) const;

private:
    PathSet paths_;
    std::unordered_map<std::string, SkipReason> unseen_;
    PathSet foldersOfUnseen_;
    std::unordered_set<std::string_view> lastNames_; ///< views into `paths_`
};

} // namespace brimvale
