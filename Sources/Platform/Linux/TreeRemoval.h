#pragma once

#include "Platform/Folder.h"
#include "Platform/Linux/Place.h"
#include "Platform/Posix/Descriptor.h"
#include "Platform/RemovalProgress.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace brimvale {

/// The removal of one folder with everything in it, by several threads. Every entry is removed by its name in
/// the open folder that holds it, and every folder is opened so from the one around it, refusing links and
/// mount points. So nothing is reached that was not in the tree, whatever is moved or exchanged meanwhile.
///
/// A thread goes down into a folder and stays at it until nothing waits there any more; others take what
/// waits in any folder that is open. Few folders are kept open, however deep the tree: one that was closed is
/// opened again from below, by the thread that comes up from there.
class TreeRemoval {
public:
    /// The folder `name` in the open folder `parent`, which stays.
    TreeRemoval(Descriptor parent, const std::string &name, RemovalProgress &progress);

    /// Removes it. 0, or the errno of the first failure, after which nothing more is removed.
    [[nodiscard]] int run();

private:
    using OpenFolder = std::shared_ptr<const Folder>;

    /// The names of folders, a zero byte after each.
    struct Subfolders {
        std::string names;
        std::size_t count = 0; ///< of those that were not taken yet
        std::size_t next = 0;  ///< where the first of them begins
    };

    /// A folder with folders in it that are still to be removed; all of it is under the lock but what never
    /// changes: the first four.
    struct Branch {
        Branch *parent;
        std::string name;
        FileIdentity identity;
        std::list<Branch>::iterator self;
        OpenFolder folder; ///< null while it is closed to save descriptors
        Subfolders waiting;
        std::size_t unfinished; ///< those that wait and those that are being removed
    };

    /// The next thing that a thread does: to remove a folder in a branch.
    struct Task {
        Branch *branch;
        OpenFolder folder; ///< the branch's
        std::string name;
        bool isEmptied; ///< its entries are gone, only itself is left
    };

    void work(std::optional<Task> task);
    std::optional<Task> waitForTask();
    std::optional<Task> empty(const Task &task);
    std::optional<Task> removeUnopened(const Task &task);
    std::optional<Task> removeEmptied(const Task &task);
    std::optional<Task> afterRemoving(const Task &task);
    std::optional<Task> grow(const Task &task, Folder folder, const FileIdentity &identity,
                             Subfolders subfolders);

    static Task take(Branch &branch);
    void keepOpen(Branch &branch, const OpenFolder &folder);
    void forget(Branch &branch);
    void callForHelp();

    bool mustStop();
    std::nullopt_t fail(int errorNumber);

    RemovalProgress &progress_;
    std::atomic<int> error_ = 0; ///< the first failure's
    std::optional<Place> place_; ///< of the parent folder of the item

    std::mutex lock_;
    std::condition_variable changed_; ///< there is more to take, or the end has come
    bool isDone_ = false;
    std::list<Branch> branches_; ///< the first is the parent folder of the item
    std::vector<Branch *> open_; ///< those that are open and not the first, longest open first
    std::size_t mostOpen_;
    std::vector<std::thread> helpers_;
    std::size_t idleThreads_ = 0;
};

} // namespace brimvale
