#include "Core/Scan/Summing.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"

#include <cerrno>

namespace brimvale {

void LinkedFiles::add(const FileStatus &status) {
    const std::uint64_t key = status.identity.inode ^ (status.identity.device * 0x9E3779B97F4A7C15U);
    const std::lock_guard guard(lock_);
    const auto [file, isNew] =
        files_.try_emplace(key, File{.names = status.linkCount, .bytes = status.allocatedBytes});
    ++file->second.found;
}

std::int64_t LinkedFiles::bytesNotFreed() const {
    const std::lock_guard guard(lock_);
    std::int64_t bytes = 0;
    for (const auto &[key, file] : files_) {
        const std::uint64_t freed = file.found < file.names ? 0 : 1;
        for (std::uint64_t name = freed; name < file.found; ++name)
            bytes = checkedAdd(bytes, file.bytes);
    }
    return bytes;
}

Summing::~Summing() {
    sums_.bytes.add(bytes_);
    sums_.entries.add(entries_);
    sums_.unreadable.add(unreadable_);
}

bool Summing::leavesUnseen(FolderHandle, const std::string &folderPath, std::string_view name) {
    const bool isUnseen = sums_.skipped.unseen(joinPath(folderPath, name)).has_value();
    entries_ += isUnseen ? 1 : 0;
    return isUnseen;
}

void Summing::file(FolderHandle, std::string_view, const FileStatus &status) {
    ++entries_;
    if (!sums_.limit.admits(status)) {
        ++unreadable_;
        return;
    }
    bytes_ = checkedAdd(bytes_, status.allocatedBytes);
    if (sums_.linked != nullptr && hasOtherNames(status))
        sums_.linked->add(status);
}

std::optional<FolderHandle> Summing::subfolder(FolderHandle, const std::string &folderPath,
                                               std::string_view name, const FileIdentity &, SubfolderKind) {
    ++entries_;
    return sums_.skipped.contains(folderPath, name) ? std::nullopt : std::optional<FolderHandle>(nullptr);
}

void Summing::noStatus(FolderHandle /*folder*/, std::string_view /*name*/) {
    noteUnreadable();
}

/// What another program has removed since its folder was read counts nothing, and was not left out.
void Summing::noteUnreadable() {
    if (errno != ENOENT)
        ++unreadable_;
}

} // namespace brimvale
