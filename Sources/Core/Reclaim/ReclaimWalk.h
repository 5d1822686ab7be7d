#pragma once

#include "Core/Reclaim/ReclaimRun.h"
#include "Platform/DirectoryWalk.h"
#include "Platform/Folder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// Looks at the files of one walk, and adds them to the run.
class ReclaimWalk final : public WalkVisitor {
public:
    explicit ReclaimWalk(ReclaimRun &run) : run_(run) {}
    ~ReclaimWalk() override;

    void enter(FolderHandle, const std::string &path, int) override;
    [[nodiscard]] bool hasUnseen(const std::string &path) override { return run_.skipped.hasUnseen(path); }
    [[nodiscard]] bool leavesUnseen(FolderHandle, const std::string &folderPath,
                                    std::string_view name) override;
    void file(FolderHandle, std::string_view name, const FileStatus &status) override;
    std::optional<FolderHandle> subfolder(FolderHandle, const std::string &folderPath, std::string_view name,
                                          const FileIdentity &identity, SubfolderKind kind) override;
    void noStatus(FolderHandle, std::string_view) override { noteUnreadable(); }
    void unreadable(FolderHandle) override { noteUnreadable(); }

private:
    void noteUnreadable();
    [[nodiscard]] bool isInLayer(std::string_view path) const;
    [[nodiscard]] bool mayBeOpen(const FileStatus &status) const;
    [[nodiscard]] FileHoldings holdingsOf(const std::string &name, const FileStatus &status);
    [[nodiscard]] BlockSharing sharing(std::uint64_t device);
    void addShared(FileHoldings &file, const std::string &name, std::uint64_t device);

    ReclaimRun &run_;
    std::string path_; ///< of the current folder
    Folder folder_;    ///< the current one, opened for the first file that needs it
    bool isOpened_ = false;
    bool isInLayer_ = false; ///< the current folder is in one of those that programs see by another mount
    std::optional<std::uint64_t> device_; ///< whose sharing is known
    BlockSharing sharing_ = BlockSharing::never;
    std::int64_t ownBytes_ = 0;
    std::int64_t files_ = 0;
    std::int64_t unreadable_ = 0;
};

} // namespace brimvale
