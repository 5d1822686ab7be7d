#pragma once

#include "Platform/Folder.h"
#include "Platform/OpenedItem.h"
#include "Platform/Posix/Place.h"
#include "Platform/Posix/WriteBit.h"
#include "Platform/RemovalProgress.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace brimvale {

/// Removes one folder with all its contents, with several threads. Every entry is removed by its name in its
/// open parent, and every subfolder is opened relative to its parent, refusing links and mount points. So
/// nothing outside the tree is reached, even if folders are moved or swapped during the removal.
///
/// A thread enters a folder and stays until no subfolder waits there; other threads take subfolders from any
/// open folder. Few folders stay open, however deep the tree: a closed one is opened again by the thread that
/// returns to it.
///
/// A folder in the tree that the user owns but may not write to gets that permission back. The parent of the
/// item keeps its permissions: it is not to be removed. If the removal fails, folders that are still open get
/// their former permissions again; one that was closed, or that a killed program leaves, stays writable for
/// its owner.
class TreeRemoval {
public:
    /// The item must outlive it.
    TreeRemoval(const OpenedItem &item, RemovalProgress &progress);

    /// Removes the folder. 0, or the errno of the first failure (ESTALE where it is not the folder that was
    /// opened); nothing more is removed after a failure.
    [[nodiscard]] int run();

    /// The path of the item or the entry in it that the failure is about; empty where it is about none.
    [[nodiscard]] const std::string &failedEntry() const { return failedEntry_; }

private:
    using OpenFolder = std::shared_ptr<const Folder>;

    /// The names of subfolders, a zero byte after each.
    struct Subfolders {
        std::string names;
        std::size_t count = 0; ///< the number not yet taken
        std::size_t next = 0;  ///< the start of the first of them
    };

    /// A folder whose subfolders are still being removed. Everything is protected by the lock except the
    /// first four fields, which never change.
    struct Branch {
        Branch *parent;
        std::string name;
        FileIdentity identity;
        std::list<Branch>::iterator self;
        OpenFolder folder; ///< null while closed to save descriptors
        Subfolders waiting;
        std::size_t unfinished; ///< subfolders that wait or are being removed
        WriteBit writeBit = {};
    };

    /// The next work of a thread: remove one folder of a branch.
    struct Task {
        Branch *branch;
        OpenFolder folder; ///< of the branch
        std::string name;
        bool isEmptied; ///< only the folder itself is left
    };

    void work(std::optional<Task> task);
    std::optional<Task> waitForTask();
    std::optional<Task> empty(const Task &task);
    std::optional<Task> enter(const Task &task, Folder folder, const FileIdentity &identity);
    std::optional<Subfolders> removeEntries(const Task &task, Folder &folder, WriteBit &writeBit);
    std::optional<Task> removeUnopened(const Task &task);
    std::optional<Task> removeEmptied(const Task &task);
    std::optional<Task> afterRemoving(const Task &task);
    std::optional<Task> grow(const Task &task, Folder folder, const FileIdentity &identity,
                             Subfolders subfolders, WriteBit writeBit);
    void restorePermissions();

    /// Whether the task is to remove the item itself.
    static bool isItem(const Task &task) { return task.branch->parent == nullptr; }
    static Task take(Branch &branch);
    void keepOpen(Branch &branch, const OpenFolder &folder);
    void forget(Branch &branch);
    void callForHelp();

    bool mustStop();
    std::nullopt_t fail(int errorNumber, const Task *task = nullptr, const char *name = "");
    [[nodiscard]] std::string pathOf(const Task &task, std::string_view name) const;

    RemovalProgress &progress_;
    std::atomic<int> error_ = 0; ///< of the first failure
    std::string failedEntry_;
    std::optional<Place> place_; ///< of the item's parent folder
    const OpenedItem &item_;
    Folder self_; ///< the item while it is emptied, to see whether it was only moved away

    std::mutex lock_;
    std::condition_variable changed_; ///< work waits, or the removal has ended
    bool isDone_ = false;
    std::list<Branch> branches_; ///< the first is the item's parent folder
    std::vector<Branch *> open_; ///< the open ones after the first, oldest first
    std::size_t mostOpen_;
    std::size_t mostHelpers_; ///< besides the first thread
    std::vector<std::thread> helpers_;
    std::size_t idleThreads_ = 0;
};

} // namespace brimvale
