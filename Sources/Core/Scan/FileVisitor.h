#pragma once

#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/ScanStats.h"
#include "Core/Scan/SumLimit.h"
#include "Platform/DirectoryWalk.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// What all walks of a search for files share.
struct FileSearchState {
    SkipList skipped;
    ScanStats &stats;
    SumLimit limit = {};
};

/// Looks at the files of one walk: leaves out what a scan skips, notes what can't be read, and keeps the
/// figures of `stats`.
class FileVisitor : public WalkVisitor {
public:
    /// The state is shared by all visitors of a search and must outlive them.
    explicit FileVisitor(FileSearchState &state) : state_(state) {}
    ~FileVisitor() override { publish(); }
    FileVisitor(const FileVisitor &) = delete;
    FileVisitor &operator=(const FileVisitor &) = delete;

    void enter(FolderHandle folder, const std::string &path, int depth) override;
    bool hasUnseen(const std::string &path) override;
    bool leavesUnseen(FolderHandle folder, const std::string &folderPath, std::string_view name) override;
    std::optional<FolderHandle> subfolder(FolderHandle folder, const std::string &folderPath,
                                          std::string_view name, const FileIdentity &identity,
                                          SubfolderKind kind) override;
    void noStatus(FolderHandle folder, std::string_view name) override;
    void unreadable(FolderHandle folder) override;

protected:
    /// Counts a file of the current folder. False for one that claims more than all files may have together,
    /// which is noted as unreadable.
    [[nodiscard]] bool count(std::string_view name, const FileStatus &status);
    /// The path of an entry of the current folder.
    [[nodiscard]] std::string pathOf(std::string_view name) const;

private:
    void publish();

    FileSearchState &state_;
    std::string folder_; ///< the path of the current one
    std::int64_t visited_ = 0;
    std::int64_t visitedBytes_ = 0;
};

} // namespace brimvale
