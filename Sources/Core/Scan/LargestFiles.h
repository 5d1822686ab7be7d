#pragma once

#include "Core/Scan/FSNode.h"
#include "Platform/FileStatus.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// A file that may be among the largest of a scan.
struct LargeFile {
    FSNode *folder;
    std::string name;
    std::int64_t size; ///< allocated bytes
    std::int64_t length;
    FileIdentity identity;
    std::uint32_t modified; ///< as `FSNode::modified`
};

/// The largest files of a scan that are too small for a node in their folder. All its walks share it.
class LargestFiles {
public:
    /// The number of files that stay in the end.
    static constexpr std::size_t most = 2000;

    /// Files of this size or less are not among the largest any more.
    [[nodiscard]] std::int64_t floor() const { return floor_.load(std::memory_order_relaxed); }

    /// Adds files, and drops those that are too small. `files` is left empty.
    void add(std::vector<LargeFile> &files);

    /// Makes nodes of the files, in the aggregates of their folders, when all walks have ended.
    void giveToAggregates();

private:
    void keepLargest();

    std::mutex lock_;
    std::vector<LargeFile> files_;        ///< at most twice as many as will stay
    std::atomic<std::int64_t> floor_ = 0; ///< bytes
};

/// The largest small files of one walk, on their way to those of the scan.
class LargestOfWalk {
public:
    explicit LargestOfWalk(LargestFiles &ofScan) : ofScan_(ofScan) {}
    ~LargestOfWalk() { ofScan_.add(files_); }
    LargestOfWalk(const LargestOfWalk &) = delete;
    LargestOfWalk &operator=(const LargestOfWalk &) = delete;

    /// Keeps the file `name` of `folder` if it may be one of the largest.
    void offer(FSNode &folder, std::string_view name, const FileStatus &status, std::uint32_t modified);

private:
    LargestFiles &ofScan_;
    std::vector<LargeFile> files_;
};

} // namespace brimvale
