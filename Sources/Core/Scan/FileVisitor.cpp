#include "Core/Scan/FileVisitor.h"

#include "Base/FileURL.h"

#include <cerrno>
#include <utility>

namespace brimvale {

void FileVisitor::enter(FolderHandle /*folder*/, const std::string &path, int depth) {
    constexpr int deepestShown = 2;
    folder_ = path;
    if (depth > deepestShown)
        return;
    publish();
    state_.stats.setCurrent(path);
}

bool FileVisitor::hasUnseen(const std::string &path) {
    return state_.skipped.hasUnseen(path);
}

bool FileVisitor::leavesUnseen(FolderHandle /*folder*/, const std::string &folderPath,
                               std::string_view name) {
    return state_.skipped.unseen(joinPath(folderPath, name)).has_value();
}

std::optional<FolderHandle> FileVisitor::subfolder(FolderHandle /*folder*/, const std::string &folderPath,
                                                   std::string_view name, const FileIdentity & /*identity*/,
                                                   SubfolderKind /*kind*/) {
    return state_.skipped.contains(folderPath, name) ? std::nullopt : std::optional<FolderHandle>(nullptr);
}

void FileVisitor::noStatus(FolderHandle /*folder*/, std::string_view name) {
    const int error = errno;
    if (error != ENOENT)
        state_.stats.addUnreadable(pathOf(name), error);
}

void FileVisitor::unreadable(FolderHandle /*folder*/) {
    const int error = errno;
    state_.stats.addUnreadable({}, error); // the path of one that was not opened is not known
}

bool FileVisitor::count(std::string_view name, const FileStatus &status) {
    if (!state_.limit.admits(status)) {
        state_.stats.addUnreadable(pathOf(name), UnreadableItem::claimsTooMuch);
        return false;
    }
    ++visited_;
    visitedBytes_ += status.allocatedBytes; // within the limit of all sums
    return true;
}

std::string FileVisitor::pathOf(std::string_view name) const {
    return joinPath(folder_, name);
}

void FileVisitor::publish() {
    state_.stats.add(std::exchange(visited_, 0), std::exchange(visitedBytes_, 0));
}

} // namespace brimvale
