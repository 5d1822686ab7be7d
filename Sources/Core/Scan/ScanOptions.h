#pragma once

#include "Platform/Host.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

namespace brimvale {

using PathSet = std::unordered_set<std::string>;

/// How a folder is measured.
struct ScanOptions {
    /// Allocated bytes from which on a file gets a node of its own; smaller ones share their folder's
    /// aggregate.
    std::int64_t minimumNodeSize = 1'048'576;
    /// False: a walk stays on the device of the path that it started from.
    bool crossesMountPoints = false;
    /// Folders that are never entered, as absolute standardised paths.
    PathSet skippedPaths;
    /// Those of them that belong to cloud providers.
    PathSet cloudProviderPaths;

    /// The options of a scan for `host`: everything skipped that should be.
    [[nodiscard]] static ScanOptions standard(const Host &host = Host::current());

    /// What the host's catalog skips, and whatever the running system has mounted that holds no storage.
    [[nodiscard]] static PathSet defaultSkippedPaths(const Host &host = Host::current());

    /// The cloud providers' folders in the host's home.
    [[nodiscard]] static PathSet cloudProviderRoots(const Host &host = Host::current());
};

/// Answers quickly whether a folder met during a walk is to be skipped: its path is composed only where its
/// name is the last component of a skipped path.
class SkipList {
public:
    explicit SkipList(const PathSet &paths);
    SkipList(const SkipList &) = delete;
    SkipList &operator=(const SkipList &) = delete;

    [[nodiscard]] bool contains(const std::string &path) const { return paths_.contains(path); }
    [[nodiscard]] bool contains(const std::string &folderPath, std::string_view name) const;

private:
    PathSet paths_;
    std::unordered_set<std::string_view> lastNames_; ///< views into `paths_`
};

} // namespace brimvale
