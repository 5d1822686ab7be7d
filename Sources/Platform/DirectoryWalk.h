#pragma once

#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The visitor's own name for a folder: the walk passes it back untouched.
using FolderHandle = void *;

/// What a walk tells. One visitor serves one walk and is called on the walk's thread only. A folder is
/// reported as a whole, from `enter` to `leave` or `interrupted`, before any of its sub-folders is entered.
class WalkVisitor {
public:
    virtual ~WalkVisitor() = default;

    /// Asked before every entry. True ends the walk.
    virtual bool isCancelled() = 0;

    /// `folder` is about to be read. `depth` is 0 for the folders that a walk was started with.
    virtual void enter(FolderHandle folder, const std::string &path, int depth) = 0;

    /// A file, a link or anything else that is no folder.
    virtual void file(FolderHandle folder, std::string_view name, const FileStatus &status) = 0;

    /// A sub-folder. Answers the handle under which it is reported later, or nothing when it is not to be
    /// entered. A mount point and a folder kept by a cloud provider are reported here and cannot be entered.
    virtual std::optional<FolderHandle> subfolder(FolderHandle folder, const std::string &folderPath,
                                                  std::string_view name, bool canBeEntered) = 0;

    /// `folder` has a sub-folder that is itself one of the folders around it (mounted there once more). It is
    /// not entered.
    virtual void containsAncestor(FolderHandle /*folder*/) {}

    /// An entry of `folder` whose status could not be had.
    virtual void noStatus(FolderHandle folder) = 0;

    /// `folder` could not be opened, or not read to its end.
    virtual void unreadable(FolderHandle folder) = 0;

    /// All entries of `folder` have been reported.
    virtual void leave(FolderHandle folder) = 0;

    /// The walk was cancelled while `folder` was read.
    virtual void interrupted(FolderHandle folder) = 0;

    /// The walk was cancelled before `folder` was entered.
    virtual void abandoned(FolderHandle folder) = 0;
};

/// Sub-folders of one folder that wait to be walked: what a walk starts from, and what one walk can hand to
/// another.
class PendingFolders {
public:
    /// The single folder at `path`, reported under `handle`; its own links are not followed. Nor are the
    /// folders `around` it, which the walk does not come by, entered within it.
    PendingFolders(const std::string &path, FolderHandle handle, const FileIdentity &identity,
                   std::vector<FileIdentity> ancestors = {});

    /// Sub-folders of the open folder at `path`, to be named by `add`.
    PendingFolders(Folder folder, std::string path);

    /// Adds the sub-folder `name`.
    void add(std::string_view name, FolderHandle handle, const FileIdentity &identity);

    [[nodiscard]] bool isEmpty() const { return siblings_.count() == 0; }

private:
    friend class DirectoryWalk;

    struct Waiting {
        std::size_t name; ///< where its name begins in `names`; a zero byte ends it
        FolderHandle handle;
        FileIdentity identity;
    };

    /// What waits in one folder, in the order in which it was met.
    struct Siblings {
        Folder folder; ///< the folder they lie in; not open where a name is an absolute path
        std::vector<Waiting> waiting;
        std::size_t next = 0;
        std::string names;

        void add(std::string_view name, FolderHandle handle, const FileIdentity &identity);
        [[nodiscard]] std::size_t count() const { return waiting.size() - next; }
        [[nodiscard]] const char *nameOf(const Waiting &one) const { return names.data() + one.name; }
        [[nodiscard]] Siblings takeLaterHalf();
    };

    PendingFolders() = default;

    Siblings siblings_;
    std::string path_;                    ///< of the folder they lie in; empty where it is not open
    int depth_ = 0;                       ///< that they are reported with
    std::vector<FileIdentity> ancestors_; ///< of that folder and those around it, as far as they were walked
};

/// A physical walk of folders: no link is followed, no folder is entered within itself, and, unless mount
/// points are crossed, no other device than that of each starting folder. It keeps at most
/// `maximumOpenFolders` folders open besides the one it started from and the one it reads, however deep it
/// goes, and never recurses.
///
/// `isStopped`, where given, ends the walk from outside as the visitor can from within.
///
/// The work is cut into steps of one folder each, and between two steps about half of what waits nearest to
/// the start can be handed over to another walk.
class DirectoryWalk {
public:
    static constexpr std::size_t maximumOpenFolders = 6;

    DirectoryWalk(WalkVisitor &visitor, bool crossesMountPoints, PendingFolders start,
                  const std::atomic<bool> *isStopped = nullptr);

    /// Enters and reads the next folder. False when none is left, or the walk was cancelled.
    bool step();

    /// Takes waiting sub-folders away from this walk, for another one. Nothing when it has none to spare.
    [[nodiscard]] std::optional<PendingFolders> handOver();

private:
    using Siblings = PendingFolders::Siblings;

    /// A folder on the way from the start to the one that is read, with what still waits in it.
    struct Frame {
        Siblings siblings;
        std::size_t pathLength; ///< how much of `path_` is this folder's
    };

    [[nodiscard]] bool isCancelled();
    bool read(Folder folder, FolderHandle handle, const FileIdentity &identity);
    void push(Siblings siblings);
    void pop();
    [[nodiscard]] Folder open(const char *name);
    bool reopen();
    void abandon(const Siblings &siblings);
    void abandonAll();

    WalkVisitor &visitor_;
    bool crossesMountPoints_;
    const std::atomic<bool> *isStopped_;
    int depth_; ///< that the first frame's sub-folders are reported with
    std::vector<Frame> frames_;
    std::vector<std::size_t> open_;       ///< the frames but the first whose folders are open, in order
    std::size_t waitingCount_ = 0;        ///< in all frames
    std::vector<FileIdentity> ancestors_; ///< of the frames' folders and those around the first
    std::string path_;                    ///< of the folder that is read
    Folder below_;                        ///< the last folder read that had nothing to descend into
    std::size_t belowDepth_ = 0;          ///< how many frames lie above it
};

} // namespace brimvale
