#pragma once

#include "Core/Scan/FSNode.h"
#include "Core/Scan/GrowingEntries.h"
#include "Core/Scan/LargestFiles.h"
#include "Core/Scan/LinkedNames.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/ScanStats.h"
#include "Core/Scan/SmallFiles.h"
#include "Core/Scan/SumLimit.h"
#include "Platform/DirectoryWalk.h"

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace brimvale {

/// State shared by all walks of one scan.
struct ScanState {
    ScanState(const ScanOptions &scanOptions, ScanStats &scanStats)
        : options(scanOptions), skipped(scanOptions), stats(scanStats),
          moment(FSNode::secondsOf(scanOptions.moment.value_or(now()))) {}

    const ScanOptions options;
    const SkipList skipped;
    ScanStats &stats;
    const std::uint32_t moment; ///< from which the ages of files count, as `FSNode::modified` has it
    LinkedNames linked;
    SumLimit sums;
    LargestFiles largest;

    std::mutex lock;                               ///< protects the two sets
    std::unordered_set<const FSNode *> unentered;  ///< folders that a cancelled scan did not reach
    std::unordered_set<const FSNode *> unfinished; ///< folders that a cancelled scan was reading
};

/// Makes the nodes of one walk. A folder's node gets the figures of its own files; `rollUp` adds up the
/// levels when all walks are done. So no two walks write the same node, and the children of a folder keep the
/// order of the disk, whichever walk made them.
class TreeBuilder : public WalkVisitor {
public:
    explicit TreeBuilder(ScanState &state) : state_(state), small_(state.moment), largest_(state.largest) {}
    ~TreeBuilder() override { publish(); }

    void enter(FolderHandle folder, const std::string &path, int depth) override;
    [[nodiscard]] bool hasUnseen(const std::string &path) override { return state_.skipped.hasUnseen(path); }
    [[nodiscard]] bool leavesUnseen(FolderHandle folder, const std::string &folderPath,
                                    std::string_view name) override;
    void file(FolderHandle folder, std::string_view name, const FileStatus &status) override;
    std::optional<FolderHandle> subfolder(FolderHandle folder, const std::string &folderPath,
                                          std::string_view name, const FileIdentity &identity,
                                          SubfolderKind kind) override;
    void noStatus(FolderHandle folder, std::string_view name) override;
    void unreadable(FolderHandle folder) override;
    void leave(FolderHandle folder) override;
    void interrupted(FolderHandle folder) override;
    void abandoned(FolderHandle folder) override;

private:
    void linkedFile(FSNode &folder, std::string_view name, const FileStatus &status);
    void showProgress(const FSNode &folder, std::int64_t bytes);
    void publish();
    void finishFolder(FSNode &node);
    void follow(FSNode &folder);
    void grow(const FSNode &folder);
    void noteUnreadable(FSNode &folder, std::string_view name, int error);

    ScanState &state_;
    std::int64_t unpublishedFiles_ = 0;
    std::int64_t unpublishedBytes_ = 0;

    // Of the current folder:
    std::vector<std::unique_ptr<FSNode>> children_;
    SmallFiles small_;

    // What the growing picture shows of the entry that the current folder belongs to:
    GrowingEntries::Entry *growing_ = nullptr; ///< null where there is no picture
    bool isFollowing_ = false;
    std::int64_t subfolders_ = 0; ///< of the current folder, to be entered
    std::int64_t grownFiles_ = 0; ///< of the current folder, already shown
    std::int64_t grownBytes_ = 0;

    LargestOfWalk largest_;
};

/// Adds the files with several names to the folders where they count, and every folder's figures to its
/// parent's, up to `root`, and gives the aggregates the largest of their files; call it once all walks are
/// done.
void rollUp(FSNode &root, ScanState &state);

} // namespace brimvale
