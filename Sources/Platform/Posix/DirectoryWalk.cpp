#include "Platform/DirectoryWalk.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace brimvale {

void PendingFolders::Siblings::add(std::string_view name, FolderHandle handle, const FileIdentity &identity) {
    waiting.push_back({names.size(), handle, identity});
    names.append(name).push_back('\0');
}

/// A copy of the names goes along; the folder does not.
PendingFolders::Siblings PendingFolders::Siblings::takeLaterHalf() {
    Siblings later;
    const std::size_t kept = waiting.size() - (count() + 1) / 2;
    later.names = names.substr(waiting[kept].name);
    for (std::size_t i = kept; i < waiting.size(); ++i)
        later.waiting.push_back(
            {waiting[i].name - waiting[kept].name, waiting[i].handle, waiting[i].identity});
    names.resize(waiting[kept].name);
    waiting.resize(kept);
    return later;
}

PendingFolders::PendingFolders(const std::string &path, FolderHandle handle, const FileIdentity &identity) {
    siblings_.add(path, handle, identity);
}

PendingFolders::PendingFolders(Folder folder, std::string path) : path_(std::move(path)) {
    siblings_.folder = std::move(folder);
}

void PendingFolders::add(std::string_view name, FolderHandle handle, const FileIdentity &identity) {
    siblings_.add(name, handle, identity);
}

DirectoryWalk::DirectoryWalk(WalkVisitor &visitor, bool crossesMountPoints, PendingFolders start)
    : visitor_(visitor), crossesMountPoints_(crossesMountPoints), depth_(start.depth_),
      line_(std::move(start.line_)), path_(std::move(start.path_)) {
    frames_.push_back({std::move(start.siblings_), path_.size()});
}

bool DirectoryWalk::step() {
    while (frames_.back().siblings.count() == 0) {
        if (frames_.size() == 1)
            return false;
        frames_.pop_back();
        line_.pop_back();
    }
    if (visitor_.isCancelled()) {
        for (const Frame &frame : frames_)
            abandon(frame.siblings);
        return false;
    }

    const std::size_t parent = frames_.size() - 1;
    Siblings &siblings = frames_[parent].siblings;
    const PendingFolders::Waiting next = siblings.waiting[siblings.next++];
    const char *name = siblings.nameOf(next);
    Folder folder = open(name);
    path_.resize(frames_[parent].pathLength);
    if (!path_.empty() && path_.back() != '/')
        path_.push_back('/');
    path_.append(name);
    if (parent > 0 && siblings.count() == 0)
        siblings.folder.close();

    visitor_.enter(next.handle, path_, depth_ + static_cast<int>(parent));
    if (!folder.isOpen()) {
        visitor_.unreadable(next.handle);
        visitor_.leave(next.handle);
        return true;
    }
    line_.push_back(next.identity);
    return read(std::move(folder), next.handle, next.identity);
}

/// Reports everything in the folder that `path_` and the end of `line_` name, and makes it the last frame if
/// any of its sub-folders are to be walked. False when the walk was cancelled.
bool DirectoryWalk::read(Folder folder, FolderHandle handle, const FileIdentity &identity) {
    Siblings siblings;
    while (const char *name = folder.nextName()) {
        if (visitor_.isCancelled()) {
            visitor_.interrupted(handle);
            abandon(siblings);
            for (const Frame &frame : frames_)
                abandon(frame.siblings);
            return false;
        }
        const std::optional<FileStatus> status = folder.statusOfEntry(name);
        if (!status) {
            visitor_.noStatus(handle);
        } else if (status->kind != FileKind::directory) {
            visitor_.file(handle, name, *status);
        } else if (std::find(line_.begin(), line_.end(), status->identity) == line_.end()) {
            const std::optional<FolderHandle> sub = visitor_.subfolder(handle, path_, name);
            const bool isOnWalkedDevice = crossesMountPoints_ || status->identity.device == identity.device;
            if (sub && isOnWalkedDevice && !status->isDataless)
                siblings.add(name, *sub, status->identity);
        }
    }
    if (errno != 0)
        visitor_.unreadable(handle);
    visitor_.leave(handle);

    if (siblings.count() == 0) {
        line_.pop_back();
    } else {
        siblings.folder = std::move(folder);
        push(std::move(siblings));
    }
    return true;
}

void DirectoryWalk::push(Siblings siblings) {
    frames_.push_back({std::move(siblings), path_.size()});
    std::size_t openCount = 0;
    for (std::size_t i = frames_.size() - 1; i > 0; --i)
        if (frames_[i].siblings.folder.isOpen() && ++openCount > maximumOpenFolders)
            return frames_[i].siblings.folder.close();
}

/// Opens what waits in the last frame. Not open, with errno set, on failure.
Folder DirectoryWalk::open(const char *name) {
    Folder &folder = frames_.back().siblings.folder;
    if (!folder.isOpen()) {
        if (frames_.size() == 1)
            return Folder::at(name, Folder::Links::refuse);
        // It was closed to save descriptors. Whatever its path leads to now, only the same folder will do.
        folder = Folder::at(path_.substr(0, frames_.back().pathLength), Folder::Links::refuse);
        if (folder.identity() != line_.back()) {
            folder.close();
            return {};
        }
    }
    return folder.subfolder(name);
}

std::optional<PendingFolders> DirectoryWalk::handOver() {
    // A walk that has but one folder left would only pass its own work on.
    std::size_t spare = 0;
    for (const Frame &frame : frames_)
        spare += frame.siblings.count();
    if (spare < 2)
        return std::nullopt;
    for (std::size_t i = 0; i < frames_.size(); ++i) {
        Siblings &siblings = frames_[i].siblings;
        if (siblings.count() == 0 || !siblings.folder.isOpen())
            continue;
        Folder folder = siblings.folder.duplicate();
        if (!folder.isOpen())
            return std::nullopt;
        PendingFolders given;
        given.siblings_ = siblings.takeLaterHalf();
        given.siblings_.folder = std::move(folder);
        given.path_ = path_.substr(0, frames_[i].pathLength);
        given.depth_ = depth_ + static_cast<int>(i);
        given.line_.assign(line_.begin(), line_.end() - static_cast<std::ptrdiff_t>(frames_.size() - 1 - i));
        return given;
    }
    return std::nullopt;
}

void DirectoryWalk::abandon(const Siblings &siblings) {
    for (std::size_t i = siblings.next; i < siblings.waiting.size(); ++i)
        visitor_.abandoned(siblings.waiting[i].handle);
}

} // namespace brimvale
