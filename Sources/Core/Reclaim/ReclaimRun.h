#pragma once

#include "Core/Reclaim/Reclaim.h"
#include "Core/Reclaim/SharedSpans.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/SumLimit.h"
#include "Platform/FileStatus.h"
#include "Platform/OpenFiles.h"
#include "Platform/SharedBlocks.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace brimvale {

/// What one file holds, in bytes.
struct FileHoldings {
    std::int64_t own = 0;       ///< nothing else has it
    std::int64_t uncertain = 0; ///< something else may have it
    std::int64_t elsewhere = 0; ///< shared, where places are not told
    std::size_t storage = 0;    ///< of the places
    std::vector<BlockPlace> places = {};
    std::int64_t reach = 0; ///< of these, as `SharedBlocks` has it
    /// What snapshots have of the file, by their number.
    std::map<std::size_t, std::vector<BlockPlace>> kept = {};
    const std::string *program = nullptr; ///< a program that uses it; null for none
};

/// The figures of one question, which all its walks share. Thread-safe.
class ReclaimRun {
public:
    explicit ReclaimRun(ReclaimProgress &shown)
        : progress(shown), used(filesInUse(shown.cancelled)), skipped(ScanOptions::standard()) {}
    ReclaimRun(const ReclaimRun &) = delete;
    ReclaimRun &operator=(const ReclaimRun &) = delete;

    ReclaimProgress &progress;
    const OpenFiles used;
    const SkipList skipped;
    SumLimit limit;

    /// Adds what is freed without any question, and what could not be looked at.
    void add(std::int64_t ownBytes, std::int64_t files, std::int64_t unreadable);
    void add(const FileHoldings &file);

    /// Notes a folder that is walked; true for the first time. Mounts may show it at several paths.
    [[nodiscard]] bool addFolder(const FileIdentity &folder);

    /// Notes a file that was selected by itself, by its parent and its name there. True where it counts: for
    /// the first time, and unless its parent was walked. Call it when the walks have ended.
    [[nodiscard]] bool addItem(const FileIdentity &parent, std::string_view name);

    /// The folders that were walked; call it when the walks have ended.
    [[nodiscard]] const std::unordered_set<FileIdentity> &folders() const { return folders_; }

    /// Notes one more name of a file with several; true for the first.
    [[nodiscard]] bool addName(const FileStatus &status);
    /// What such a file holds; it counts if all its names are found.
    void setLinked(const FileIdentity &file, FileHoldings holdings);

    /// The number of the storage of a folder, which has this device.
    [[nodiscard]] std::size_t storage(std::uint64_t device, const std::string &folder);

    /// The folder as it is in a snapshot.
    struct Copy {
        std::size_t snapshot;
        std::string folder;
    };
    /// Where snapshots may have copies of a folder, which has this device.
    [[nodiscard]] std::vector<Copy> copiesOf(std::uint64_t device, const std::string &folder);

    /// The sum of everything; call it when the walks have ended.
    [[nodiscard]] Reclaim result();

private:
    struct Linked {
        std::uint64_t names = 0;
        std::uint64_t found = 0;
        std::int64_t bytes = 0;
        FileHoldings holdings = {};
    };
    struct Snapshotted {
        std::string top;
        std::vector<std::size_t> snapshots;
    };

    void include(const FileHoldings &file);
    void resolveLinks();
    [[nodiscard]] Snapshotted snapshottedOf(const std::string &folder);

    std::mutex foldersLock_;
    std::unordered_set<FileIdentity> folders_;
    std::unordered_map<FileIdentity, std::set<std::string, std::less<>>> items_; ///< names, by their parent

    std::mutex devicesLock_;                                  ///< held while the system is asked
    std::unordered_map<std::uint64_t, std::size_t> storages_; ///< by device
    std::map<std::string, std::size_t> storageNames_;
    std::unordered_map<std::uint64_t, Snapshotted> snapshotted_; ///< by device
    std::vector<std::string> snapshots_;

    std::mutex lock_; ///< protects the rest
    Reclaim sums_;
    std::map<std::string, std::int64_t> programs_;
    std::unordered_map<FileIdentity, Linked> linked_;
    std::map<std::size_t, SharedSpans> spans_; ///< by storage
};

} // namespace brimvale
