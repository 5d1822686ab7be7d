#pragma once

#include "Base/StopFlag.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace brimvale {

/// The visitor's handle for a folder. The walk passes it back unchanged.
using FolderHandle = void *;

/// Whether a walk enters a subfolder, and why not: it may be on another volume, a placeholder for a folder
/// of a cloud provider, or a snapshot, which shows the files of another folder once more.
enum class SubfolderKind : std::uint8_t { walkable, otherVolume, dataless, snapshot };

/// The kind of a subfolder that has another device than its open parent folder. A subvolume of Btrfs is part
/// of its volume; a read-only one that was made of another is a snapshot.
[[nodiscard]] SubfolderKind kindOnOtherDevice(const Folder &parent, const char *name);

/// Receives what a walk finds. One visitor serves one walk and is called only on the walk's thread. A folder
/// is reported completely, from `enter` to `leave` or `interrupted`, before any of its subfolders is entered.
class WalkVisitor {
public:
    virtual ~WalkVisitor() = default;

    /// `folder` is about to be read. `depth` is 0 for the folders that a walk was started with.
    virtual void enter(FolderHandle /*folder*/, const std::string & /*path*/, int /*depth*/) {}

    /// Whether entries of the folder at `path` may have to be left out unseen.
    [[nodiscard]] virtual bool hasUnseen(const std::string & /*path*/) { return false; }

    /// Whether this entry of such a folder is left out: not even its status is read, because that may wait
    /// for another machine. Then the visitor has noted it.
    [[nodiscard]] virtual bool leavesUnseen(FolderHandle /*folder*/, const std::string & /*folderPath*/,
                                            std::string_view /*name*/) {
        return false;
    }

    /// A file, a link or anything else that is not a folder.
    virtual void file(FolderHandle folder, std::string_view name, const FileStatus &status) = 0;

    /// A subfolder. Returns the handle for later calls, or nothing if it should not be entered. Only a
    /// walkable one is.
    virtual std::optional<FolderHandle> subfolder(FolderHandle folder, const std::string &folderPath,
                                                  std::string_view name, const FileIdentity &identity,
                                                  SubfolderKind kind) = 0;

    /// `folder` contains one of its own ancestors, mounted there a second time. It is not entered.
    virtual void containsAncestor(FolderHandle /*folder*/) {}

    /// The status of the entry `name` of `folder` could not be read; errno says why.
    virtual void noStatus(FolderHandle folder, std::string_view name) = 0;

    /// `folder` could not be opened, or not read to its end; errno says why unless `enter` changed it.
    virtual void unreadable(FolderHandle folder) = 0;

    /// All entries of `folder` have been reported.
    virtual void leave(FolderHandle /*folder*/) {}

    /// The walk was cancelled while `folder` was read.
    virtual void interrupted(FolderHandle /*folder*/) {}

    /// The walk was cancelled before `folder` was entered.
    virtual void abandoned(FolderHandle /*folder*/) {}
};

/// Subfolders of one folder that wait for a walk: the start of a walk, or the part that one walk hands to
/// another.
class PendingFolders {
public:
    /// The single folder at `path`, reported with `handle`; a link is not followed. Its `ancestors`, which
    /// this walk does not visit, are not entered again below it.
    PendingFolders(const std::string &path, FolderHandle handle, const FileIdentity &identity,
                   std::vector<FileIdentity> ancestors = {});

    /// Subfolders of the open folder at `path`; name them with `add`.
    PendingFolders(Folder folder, std::string path);

    /// That folder, to list it.
    [[nodiscard]] Folder &folder() { return siblings_.folder; }

    /// Adds the subfolder `name`.
    void add(std::string_view name, FolderHandle handle, const FileIdentity &identity);

    [[nodiscard]] bool isEmpty() const { return siblings_.count() == 0; }

private:
    friend class DirectoryWalk;

    struct Waiting {
        std::size_t name; ///< where its name begins in `names`; a zero byte ends it
        FolderHandle handle;
        FileIdentity identity;
    };

    /// The waiting subfolders of one folder, in the order in which they were found.
    struct Siblings {
        Folder folder; ///< their parent; not open where a name is an absolute path
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
    std::string path_;                    ///< of their parent; empty where it is not open
    int depth_ = 0;                       ///< reported with them
    std::vector<FileIdentity> ancestors_; ///< of that parent and its walked ancestors, outermost first
};

/// A physical walk of folders: no link is followed, no folder is entered within itself and, unless mount
/// points are crossed, each walk stays on the device of its starting folder. It keeps at most
/// `maximumOpenFolders` folders open besides the starting and the current one, at any depth, and never
/// recurses.
///
/// `cancelled` is checked before every entry, and ends the walk.
///
/// Each step reads one folder. Between two steps, another walk can take about half of the waiting subfolders
/// nearest to the start.
class DirectoryWalk {
public:
    static constexpr std::size_t maximumOpenFolders = 6;

    DirectoryWalk(WalkVisitor &visitor, bool crossesMountPoints, PendingFolders start, StopFlag cancelled);

    /// Enters and reads the next folder. False when none is left or the walk was cancelled.
    bool step();

    /// Takes waiting subfolders from this walk for another one. Nothing if it has none to spare.
    [[nodiscard]] std::optional<PendingFolders> handOver();

private:
    using Siblings = PendingFolders::Siblings;

    /// A folder between the start and the current folder, with its subfolders that still wait.
    struct Frame {
        Siblings siblings;
        std::size_t pathLength; ///< the length of this folder's path in `path_`
    };

    bool read(Folder folder, FolderHandle handle, const FileIdentity &identity);
    void push(Siblings siblings);
    void pop();
    void pushAncestor(const FileIdentity &identity);
    void popAncestor();
    [[nodiscard]] bool isAncestor(const FileIdentity &identity) const;
    [[nodiscard]] Folder open(const char *name);
    bool reopen();
    void abandon(const Siblings &siblings);
    void abandonAll();

    WalkVisitor &visitor_;
    bool crossesMountPoints_;
    StopFlag cancelled_;
    int depth_; ///< of the subfolders of the first frame
    std::vector<Frame> frames_;
    std::vector<std::size_t> open_;       ///< the frames after the first whose folders are open, in order
    std::size_t waitingCount_ = 0;        ///< in all frames
    std::vector<FileIdentity> ancestors_; ///< of the frames' folders and the ancestors of the first
    std::unordered_set<FileIdentity> deepAncestors_; ///< those of them that are not compared one by one
    std::string path_;                               ///< of the current folder
    Folder below_;                                   ///< the last folder that had nothing to descend into
    std::size_t belowDepth_ = 0;                     ///< the number of frames above it
};

} // namespace brimvale
