#include "Platform/Posix/TreeRemoval.h"

#include "Platform/Posix/EntryRemoval.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

/// How many threads help the first one. On two cores, four threads take half as long again as two: they wait
/// for each other in the file system's journal. On one core, a second thread computes while the disk is
/// waited for.
std::size_t mostHelpers() {
    return std::clamp(std::thread::hardware_concurrency(), 2U, 4U) - 1;
}

/// The number of folders kept open so that several threads can take work from them.
constexpr std::size_t usualOpenFolders = 64;

/// Whether the folder still has a name somewhere.
bool isElsewhere(const Folder &folder) {
    struct stat record {};
    return folder.isOpen() && fstat(folder.descriptor(), &record) == 0 && record.st_nlink > 0;
}

} // namespace

TreeRemoval::TreeRemoval(const OpenedItem &item, RemovalProgress &progress)
    : progress_(progress), item_(item), mostOpen_(std::min(usualOpenFolders, descriptorLimit() / 8)),
      mostHelpers_(mostHelpers()) {
    Folder parent = item.folder().duplicate();
    place_ = placeOf(parent.descriptor());
    if (!place_) {
        error_ = errno;
        return;
    }
    branches_.push_back({nullptr,
                         "",
                         place_->identity,
                         {},
                         std::make_shared<const Folder>(std::move(parent)),
                         {item.name() + '\0', 1},
                         1});
}

int TreeRemoval::run() {
    if (error_ == 0)
        work(take(branches_.front()));
    std::vector<std::thread> helpers;
    {
        const std::lock_guard guard(lock_);
        helpers.swap(helpers_);
    }
    for (std::thread &helper : helpers)
        helper.join();
    if (error_ != 0)
        restorePermissions();
    return error_;
}

/// Call when no thread removes anything any more.
void TreeRemoval::restorePermissions() {
    for (Branch &branch : branches_)
        if (branch.folder != nullptr)
            branch.writeBit.takeBack(*branch.folder);
}

void TreeRemoval::work(std::optional<Task> task) {
    while (task || (task = waitForTask()))
        task = task->isEmptied ? removeEmptied(*task) : empty(*task);
}

/// Takes work from the folder that was opened first, because its subfolders are likely to be large. Nothing
/// at the end.
std::optional<TreeRemoval::Task> TreeRemoval::waitForTask() {
    std::unique_lock lock(lock_);
    ++idleThreads_;
    while (!isDone_ && error_ == 0) {
        const auto found = std::find_if(open_.begin(), open_.end(),
                                        [](const Branch *branch) { return branch->waiting.count > 0; });
        if (found != open_.end()) {
            --idleThreads_;
            return take(**found);
        }
        changed_.wait(lock);
    }
    return std::nullopt;
}

/// Removes everything but the subfolders from a folder, and continues with these or, when there are none,
/// with the folder itself.
std::optional<TreeRemoval::Task> TreeRemoval::empty(const Task &task) {
    if (mustStop())
        return std::nullopt;
    Folder folder = task.folder->subfolder(task.name.c_str());
    if (!folder.isOpen())
        return removeUnopened(task);
    const std::optional<Place> place = placeOf(folder.descriptor());
    if (!place)
        return fail(errno, &task);
    if (!place->isBeside(*place_))
        return fail(EBUSY);
    if (isItem(task)) {
        if (place->identity != item_.identity().file)
            return fail(ESTALE);
        self_ = folder.duplicate();
    }
    return enter(task, std::move(folder), place->identity);
}

/// Continues with an opened folder: that of the task.
std::optional<TreeRemoval::Task> TreeRemoval::enter(const Task &task, Folder folder,
                                                    const FileIdentity &identity) {
    WriteBit writeBit;
    std::optional<Subfolders> subfolders = removeEntries(task, folder, writeBit);
    if (!subfolders) {
        writeBit.takeBack(folder);
        return std::nullopt;
    }
    if (subfolders->count > 0)
        return grow(task, std::move(folder), identity, *std::move(subfolders), writeBit);
    return Task{task.branch, task.folder, task.name, true};
}

/// Removes everything but the subfolders from the folder of the task, and returns these. Nothing after a
/// failure.
std::optional<TreeRemoval::Subfolders> TreeRemoval::removeEntries(const Task &task, Folder &folder,
                                                                  WriteBit &writeBit) {
    // All names are read before the first entry is removed: file systems may leave out names of a folder that
    // changes while it is read.
    std::string names;
    while (const char *name = folder.nextName()) {
        if (mustStop())
            return std::nullopt;
        names.append(name).push_back('\0');
    }
    if (errno != 0)
        return fail(errno, &task);

    Subfolders subfolders;
    for (std::size_t next = 0; next < names.size();) {
        if (mustStop())
            return std::nullopt;
        const char *name = names.c_str() + next;
        const std::size_t length = std::strlen(name) + 1;
        next += length;
        if (unlinkat(folder.descriptor(), name, 0) == 0 ||
            (errno == EACCES && writeBit.add(folder) && unlinkat(folder.descriptor(), name, 0) == 0)) {
            progress_.entriesRemoved.fetch_add(1, std::memory_order_relaxed);
            continue;
        }
        const int error = errno;
        if (isFolderToEmpty(folder, name, error)) {
            subfolders.names.append(name, length);
            ++subfolders.count;
        } else if (error != ENOENT) {
            return fail(error, &task, name);
        }
    }
    return subfolders;
}

/// Handles a folder that could not be opened; errno says why.
std::optional<TreeRemoval::Task> TreeRemoval::removeUnopened(const Task &task) {
    const int error = errno;
    const bool isExchanged = error == ENOTDIR || error == ELOOP;
    if (isItem(task) && isExchanged)
        return fail(ESTALE);
    // Anything that took the folder's place is removed as it is; an unreadable folder is removed if it is
    // empty. A folder that another program has removed is gone only when the system says so here too. The
    // item may as well have been moved away.
    if (unlinkat(task.folder->descriptor(), task.name.c_str(), isExchanged ? 0 : AT_REMOVEDIR) == 0)
        progress_.entriesRemoved.fetch_add(1, std::memory_order_relaxed);
    else if (error != ENOENT || errno != ENOENT)
        return fail(error, &task);
    else if (isItem(task))
        return fail(ESTALE);
    return afterRemoving(task);
}

std::optional<TreeRemoval::Task> TreeRemoval::removeEmptied(const Task &task) {
    if (mustStop())
        return std::nullopt;
    // Another folder may have taken the name of the item.
    if (isItem(task) && item_.isReplaced())
        return fail(ESTALE);
    if (unlinkat(task.folder->descriptor(), task.name.c_str(), AT_REMOVEDIR) == 0)
        progress_.entriesRemoved.fetch_add(1, std::memory_order_relaxed);
    else if (errno != ENOENT)
        return fail(errno, &task);
    else if (isItem(task) && isElsewhere(self_))
        return fail(ESTALE);
    return afterRemoving(task);
}

/// The task after a folder is removed: its next sibling or, after the last one, its parent.
std::optional<TreeRemoval::Task> TreeRemoval::afterRemoving(const Task &task) {
    Task up;
    FileIdentity identityAbove;
    {
        const std::lock_guard guard(lock_);
        Branch &branch = *task.branch;
        --branch.unfinished;
        if (branch.waiting.count > 0) {
            keepOpen(branch, task.folder);
            return take(branch);
        }
        if (branch.unfinished > 0)
            return std::nullopt; // other threads work on the rest
        if (branch.parent == nullptr) {
            isDone_ = true;
            changed_.notify_all();
            return std::nullopt;
        }
        identityAbove = branch.parent->identity;
        up = {branch.parent, branch.parent->folder, std::move(branch.name), true};
        forget(branch);
    }
    if (up.folder == nullptr) {
        Folder above = task.folder->ancestor(1);
        // ".." may lead elsewhere by now: accept only the parent that we came from.
        if (above.identity() != identityAbove)
            return fail(ENOENT);
        up.folder = std::make_shared<const Folder>(std::move(above));
    }
    return up;
}

/// Makes a branch of the folder and takes its first subfolder.
std::optional<TreeRemoval::Task> TreeRemoval::grow(const Task &task, Folder folder,
                                                   const FileIdentity &identity, Subfolders subfolders,
                                                   WriteBit writeBit) {
    const auto open = std::make_shared<const Folder>(std::move(folder));
    const std::lock_guard guard(lock_);
    const std::size_t count = subfolders.count;
    branches_.push_back(
        {task.branch, task.name, identity, {}, nullptr, std::move(subfolders), count, writeBit});
    Branch &branch = branches_.back();
    branch.self = std::prev(branches_.end());
    keepOpen(branch, open);
    Task first = take(branch);
    if (branch.waiting.count > 0)
        callForHelp();
    return first;
}

TreeRemoval::Task TreeRemoval::take(Branch &branch) {
    Subfolders &waiting = branch.waiting;
    Task task{&branch, branch.folder, waiting.names.c_str() + waiting.next, false};
    waiting.next += task.name.size() + 1;
    --waiting.count;
    return task;
}

/// Lets other threads take work from the branch. When too many branches are open, the oldest one with a
/// thread at work below it is closed: that thread opens it again on its way up.
void TreeRemoval::keepOpen(Branch &branch, const OpenFolder &folder) {
    if (branch.folder != nullptr)
        return;
    if (open_.size() >= mostOpen_) {
        const auto isWorkedOn = [](const Branch *one) { return one->unfinished > one->waiting.count; };
        auto found = std::find_if(open_.begin(), open_.end(), [&](const Branch *one) {
            return one->waiting.count == 0 && isWorkedOn(one);
        });
        if (found == open_.end())
            found = std::find_if(open_.begin(), open_.end(), isWorkedOn);
        if (found != open_.end()) {
            (*found)->folder.reset();
            open_.erase(found);
        }
    }
    branch.folder = folder;
    open_.push_back(&branch);
    changed_.notify_all();
}

void TreeRemoval::forget(Branch &branch) {
    std::erase(open_, &branch);
    branches_.erase(branch.self);
}

/// Starts another thread when all are busy.
void TreeRemoval::callForHelp() {
    if (idleThreads_ > 0 || helpers_.size() == mostHelpers_ || error_ != 0)
        return;
    try {
        helpers_.emplace_back([this] { work(std::nullopt); });
    } catch (const std::system_error &) {
        // The system has no thread to spare. The existing ones finish the work, if need be only the caller's.
    }
}

bool TreeRemoval::mustStop() {
    if (progress_.cancelled.isSet())
        fail(ECANCELED);
    return error_.load(std::memory_order_relaxed) != 0;
}

/// Ends the removal with this error, unless it has ended already. It is that of the entry `name` in the
/// folder of the task or, where that is empty, of the folder; without a task, of no entry in particular.
std::nullopt_t TreeRemoval::fail(int errorNumber, const Task *task, const char *name) {
    {
        const std::lock_guard guard(lock_);
        int none = 0;
        if (error_.compare_exchange_strong(none, errorNumber) && task != nullptr)
            failedEntry_ = pathOf(*task, name);
    }
    changed_.notify_all();
    return std::nullopt;
}

std::string TreeRemoval::pathOf(const Task &task, std::string_view name) const {
    std::vector<std::string_view> names{task.name};
    for (const Branch *branch = task.branch; branch->parent != nullptr; branch = branch->parent)
        names.push_back(branch->name);
    std::string path = item_.place().parent().path();
    for (auto next = names.rbegin(); next != names.rend(); ++next)
        path.append(path.ends_with('/') ? "" : "/").append(*next);
    return name.empty() ? path : joinPath(path, name);
}

} // namespace brimvale
