#pragma once

#include "Core/Scan/Counter.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/SumLimit.h"
#include "Platform/DirectoryWalk.h"

#include <cstdint>
#include <mutex>
#include <unordered_map>

namespace brimvale {

/// Whether deleting this name of a file leaves the file under another name.
[[nodiscard]] inline bool hasOtherNames(const FileStatus &status) {
    return status.kind == FileKind::regularFile && status.linkCount > 1;
}

/// The files with several names that one measurement has found, with a lock.
class LinkedFiles {
public:
    /// Adds one name of the file.
    void add(const FileStatus &status);

    /// How much less than the sum over all names is freed when all these names are deleted.
    [[nodiscard]] std::int64_t bytesNotFreed() const;

private:
    struct File {
        std::uint64_t names;
        std::uint64_t found = 0;
        std::int64_t bytes;
    };

    mutable std::mutex lock_;
    std::unordered_map<std::uint64_t, File> files_; ///< by device and inode
};

/// The figures of one measurement, which all its walks share.
struct Sums {
    /// `linkedFiles` may be null when nobody asks for them.
    Sums(const SkipList &skipList, LinkedFiles *linkedFiles) : skipped(skipList), linked(linkedFiles) {}

    const SkipList &skipped;
    LinkedFiles *linked;
    SumLimit limit;
    Counter bytes, entries, unreadable;
};

/// Sums up one walk, and adds it to the others at its end.
class Summing final : public WalkVisitor {
public:
    explicit Summing(Sums &sums) : sums_(sums) {}
    ~Summing() override;

    [[nodiscard]] bool hasUnseen(const std::string &path) override { return sums_.skipped.hasUnseen(path); }
    [[nodiscard]] bool leavesUnseen(FolderHandle, const std::string &folderPath,
                                    std::string_view name) override;
    void file(FolderHandle, std::string_view, const FileStatus &status) override;
    std::optional<FolderHandle> subfolder(FolderHandle, const std::string &folderPath, std::string_view name,
                                          const FileIdentity &, SubfolderKind) override;
    void noStatus(FolderHandle folder, std::string_view name) override;
    void unreadable(FolderHandle) override { noteUnreadable(); }

private:
    void noteUnreadable();

    Sums &sums_;
    std::int64_t bytes_ = 0;
    std::int64_t entries_ = 0;
    std::int64_t unreadable_ = 0;
};

} // namespace brimvale
