#include "Platform/DirectoryWalk.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace brimvale {

namespace {

/// Comparing so many ancestors is faster than looking into a set. Few folders are deeper.
constexpr std::size_t comparedAncestors = 64;

} // namespace

void PendingFolders::Siblings::add(std::string_view name, FolderHandle handle, const FileIdentity &identity) {
    waiting.push_back({names.size(), handle, identity});
    names.append(name).push_back('\0');
}

/// Copies the names, but not the folder.
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

PendingFolders::PendingFolders(const std::string &path, FolderHandle handle, const FileIdentity &identity,
                               std::vector<FileIdentity> ancestors)
    : ancestors_(std::move(ancestors)) {
    siblings_.add(path, handle, identity);
}

PendingFolders::PendingFolders(Folder folder, std::string path) : path_(std::move(path)) {
    siblings_.folder = std::move(folder);
}

void PendingFolders::add(std::string_view name, FolderHandle handle, const FileIdentity &identity) {
    siblings_.add(name, handle, identity);
}

DirectoryWalk::DirectoryWalk(WalkVisitor &visitor, bool crossesMountPoints, PendingFolders start,
                             StopFlag cancelled)
    : visitor_(visitor), crossesMountPoints_(crossesMountPoints), cancelled_(std::move(cancelled)),
      depth_(start.depth_), path_(std::move(start.path_)) {
    for (const FileIdentity &ancestor : start.ancestors_)
        pushAncestor(ancestor);
    waitingCount_ = start.siblings_.count();
    frames_.push_back({std::move(start.siblings_), path_.size()});
}

bool DirectoryWalk::step() {
    while (frames_.back().siblings.count() == 0) {
        if (frames_.size() == 1)
            return false;
        pop();
    }
    if (cancelled_.isSet()) {
        abandonAll();
        return false;
    }

    const std::size_t parent = frames_.size() - 1;
    Siblings &siblings = frames_[parent].siblings;
    const PendingFolders::Waiting next = siblings.waiting[siblings.next++];
    --waitingCount_;
    const char *name = siblings.nameOf(next);
    Folder folder = open(name);
    path_.resize(frames_[parent].pathLength);
    if (!path_.empty() && path_.back() != '/')
        path_.push_back('/');
    path_.append(name);

    if (parent > 0 && siblings.count() == 0 && siblings.folder.isOpen()) {
        siblings = Siblings(); // closes the folder; in a deep chain, the names of every frame add up
        open_.pop_back();
    }

    visitor_.enter(next.handle, path_, depth_ + static_cast<int>(parent));
    if (!folder.isOpen()) {
        visitor_.unreadable(next.handle);
        visitor_.leave(next.handle);
        return true;
    }
    pushAncestor(next.identity);
    return read(std::move(folder), next.handle, next.identity);
}

/// Reports every entry of the folder that `path_` and the end of `ancestors_` describe. If it has subfolders
/// to walk, it becomes the last frame. False when the walk was cancelled.
bool DirectoryWalk::read(Folder folder, FolderHandle handle, const FileIdentity &identity) {
    Siblings siblings;
    const bool hasUnseen = visitor_.hasUnseen(path_);
    while (const char *name = folder.nextName()) {
        if (cancelled_.isSet()) {
            visitor_.interrupted(handle);
            abandon(siblings);
            abandonAll();
            return false;
        }
        if (hasUnseen && visitor_.leavesUnseen(handle, path_, name))
            continue;
        const std::optional<FileStatus> status = folder.statusOfEntry(name);
        if (!status) {
            visitor_.noStatus(handle, name);
        } else if (status->kind != FileKind::directory) {
            visitor_.file(handle, name, *status);
        } else if (isAncestor(status->identity)) {
            visitor_.containsAncestor(handle);
        } else {
            const bool isOnWalkedDevice = crossesMountPoints_ || status->identity.device == identity.device;
            const SubfolderKind kind = !isOnWalkedDevice    ? kindOnOtherDevice(folder, name)
                                       : status->isDataless ? SubfolderKind::dataless
                                                            : SubfolderKind::walkable;
            const std::optional<FolderHandle> sub =
                visitor_.subfolder(handle, path_, name, status->identity, kind);
            if (sub && kind == SubfolderKind::walkable)
                siblings.add(name, *sub, status->identity);
        }
    }
    if (errno != 0)
        visitor_.unreadable(handle);
    visitor_.leave(handle);

    if (siblings.count() > 0) {
        siblings.folder = std::move(folder);
        push(std::move(siblings));
    } else {
        popAncestor();
        below_ = std::move(folder);
        belowDepth_ = frames_.size();
    }
    return true;
}

void DirectoryWalk::push(Siblings siblings) {
    waitingCount_ += siblings.count();
    open_.push_back(frames_.size());
    frames_.push_back({std::move(siblings), path_.size()});
    if (open_.size() > maximumOpenFolders) {
        frames_[open_.front()].siblings.folder.close();
        open_.erase(open_.begin());
    }
}

/// Drops the last frame, which has no waiting subfolders.
void DirectoryWalk::pop() {
    if (frames_.back().siblings.folder.isOpen())
        open_.pop_back();
    frames_.pop_back();
    popAncestor();
}

void DirectoryWalk::pushAncestor(const FileIdentity &identity) {
    ancestors_.push_back(identity);
    if (ancestors_.size() > comparedAncestors)
        deepAncestors_.insert(identity);
}

void DirectoryWalk::popAncestor() {
    if (ancestors_.size() > comparedAncestors)
        deepAncestors_.erase(ancestors_.back());
    ancestors_.pop_back();
}

bool DirectoryWalk::isAncestor(const FileIdentity &identity) const {
    const auto end = ancestors_.size() > comparedAncestors
                         ? ancestors_.begin() + static_cast<std::ptrdiff_t>(comparedAncestors)
                         : ancestors_.end();
    return std::find(ancestors_.begin(), end, identity) != end || deepAncestors_.contains(identity);
}

/// Opens a waiting subfolder of the last frame. Not open, with errno set, on failure.
Folder DirectoryWalk::open(const char *name) {
    const Folder &folder = frames_.back().siblings.folder;
    if (folder.isOpen() || (frames_.size() > 1 && reopen()))
        return folder.subfolder(name);
    return frames_.size() == 1 ? Folder::at(name, Folder::Links::refuse) : Folder();
}

/// Opens the folder of the last frame again after it was closed to save descriptors: upward from the folder
/// left last, or by its path. Accepted only if it is the same folder.
bool DirectoryWalk::reopen() {
    const std::size_t depth = frames_.size() - 1;
    Folder &folder = frames_.back().siblings.folder;
    folder = below_.isOpen() && belowDepth_ > depth ? below_.ancestor(belowDepth_ - depth) : Folder();
    if (folder.identity() != ancestors_.back())
        folder = Folder::at(path_.substr(0, frames_.back().pathLength), Folder::Links::refuse);
    if (folder.identity() != ancestors_.back()) {
        folder.close();
        return false;
    }
    open_.push_back(depth);
    return true;
}

std::optional<PendingFolders> DirectoryWalk::handOver() {
    // A walk with one folder left would only pass on its own work.
    if (waitingCount_ < 2)
        return std::nullopt;
    std::size_t frame = 0;
    const auto canGive = [&](std::size_t i) {
        return frames_[i].siblings.count() > 0 && frames_[i].siblings.folder.isOpen();
    };
    if (!canGive(0)) {
        const auto found = std::find_if(open_.begin(), open_.end(), canGive);
        if (found == open_.end())
            return std::nullopt;
        frame = *found;
    }
    Folder folder = frames_[frame].siblings.folder.duplicate();
    if (!folder.isOpen())
        return std::nullopt;
    PendingFolders given;
    given.siblings_ = frames_[frame].siblings.takeLaterHalf();
    given.siblings_.folder = std::move(folder);
    given.path_ = path_.substr(0, frames_[frame].pathLength);
    given.depth_ = depth_ + static_cast<int>(frame);
    given.ancestors_.assign(ancestors_.begin(),
                            ancestors_.end() - static_cast<std::ptrdiff_t>(frames_.size() - 1 - frame));
    waitingCount_ -= given.siblings_.count();
    return given;
}

void DirectoryWalk::abandonAll() {
    for (const Frame &frame : frames_)
        abandon(frame.siblings);
}

void DirectoryWalk::abandon(const Siblings &siblings) {
    for (std::size_t i = siblings.next; i < siblings.waiting.size(); ++i)
        visitor_.abandoned(siblings.waiting[i].handle);
}

} // namespace brimvale
