#include "Core/Scan/WalkPool.h"

#include "Platform/Dataless.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace brimvale {

namespace {

/// Enough to keep the queue of a cold disk full: 16 threads, including the caller, walk a cold tree twice as
/// fast as 2.
constexpr std::size_t mostWorkers = 15;

/// Descriptors of one walk: the folders it keeps open, its start, the current folder, and one to hand over.
constexpr std::size_t descriptorsPerWalk = DirectoryWalk::maximumOpenFolders + 3;

/// Descriptors reserved for the rest of the program.
constexpr std::size_t descriptorsElsewhere = 32;

/// Pools that may be busy at the same time: the shared one, that of a scan, and that of an earlier one which
/// was stopped or reads changed folders again.
constexpr std::size_t busyPools = 3;

} // namespace

int WalkPool::usualWorkerCount() {
    const std::size_t limit = descriptorLimit();
    const std::size_t forWalks =
        limit > descriptorsElsewhere ? (limit - descriptorsElsewhere) / busyPools : 0;
    const std::size_t walks = std::max<std::size_t>(forWalks / descriptorsPerWalk, 1);
    return static_cast<int>(std::min(walks - 1, mostWorkers));
}

WalkPool &WalkPool::shared() {
    static WalkPool pool(usualWorkerCount());
    return pool;
}

WalkPool::WalkPool(int workerCount) {
    try {
        for (int i = 0; i < workerCount; ++i)
            workers_.emplace_back([this] { work(); });
    } catch (const std::system_error &) {
        // The system gives no more threads. The existing ones do the work, if necessary only the caller's.
    }
}

WalkPool::~WalkPool() {
    {
        const std::lock_guard guard(lock_);
        isClosing_ = true;
    }
    queued_.notify_all();
    for (std::thread &worker : workers_)
        worker.join();
}

void WalkPool::walk(PendingFolders start, bool crossesMountPoints, const StopFlag &cancelled,
                    const MakeVisitor &makeVisitor) {
    std::vector<PendingFolders> starts;
    starts.push_back(std::move(start));
    walk(std::move(starts), crossesMountPoints, cancelled, makeVisitor);
}

void WalkPool::walk(std::vector<PendingFolders> starts, bool crossesMountPoints, const StopFlag &cancelled,
                    const MakeVisitor &makeVisitor) {
    if (starts.empty())
        return;
    const NoMaterialization guard;
    Job job{crossesMountPoints, cancelled, makeVisitor, 1};
    {
        const std::lock_guard guardOfQueue(lock_);
        for (std::size_t i = 1; i < starts.size(); ++i)
            queue(job, std::move(starts[i]));
    }
    if (starts.size() > 1)
        queued_.notify_all();
    run(job, std::move(starts.front()));

    std::unique_lock lock(lock_);
    ++idleWorkers_;
    while (job.unfinished > 0) {
        const auto mine =
            std::find_if(queue_.begin(), queue_.end(), [&](const Task &task) { return task.job == &job; });
        if (mine == queue_.end()) {
            changed_.wait(lock);
            continue;
        }
        // One idle worker and one queued task less: the difference stays.
        PendingFolders folders = std::move(mine->folders);
        queue_.erase(mine);
        lock.unlock();
        run(job, std::move(folders));
        lock.lock();
        ++idleWorkers_;
    }
    --idleWorkers_;
}

void WalkPool::work() {
    const NoMaterialization guard;
    std::unique_lock lock(lock_);
    while (true) {
        ++idleWorkers_;
        queued_.wait(lock, [this] { return isClosing_ || !queue_.empty(); });
        if (isClosing_)
            return;
        Task task = std::move(queue_.front());
        queue_.pop_front();
        lock.unlock();
        run(*task.job, std::move(task.folders));
        lock.lock();
    }
}

/// One walk of a job, from its start to its end.
void WalkPool::run(Job &job, PendingFolders folders) {
    {
        const std::unique_ptr<WalkVisitor> visitor = job.makeVisitor();
        DirectoryWalk walk(*visitor, job.crossesMountPoints, std::move(folders), job.cancelled);
        while (walk.step())
            offer(job, walk);
    }
    const std::lock_guard guard(lock_);
    if (--job.unfinished == 0)
        changed_.notify_all();
}

/// Call with the lock held.
void WalkPool::queue(Job &job, PendingFolders folders) {
    queue_.push_back({&job, std::move(folders)});
    ++job.unfinished;
    --idleWorkers_;
}

void WalkPool::offer(Job &job, DirectoryWalk &walk) {
    while (idleWorkers_.load(std::memory_order_relaxed) > 0) {
        std::optional<PendingFolders> folders = walk.handOver();
        if (!folders)
            return;
        {
            const std::lock_guard guard(lock_);
            queue(job, std::move(*folders));
        }
        queued_.notify_one();
        changed_.notify_all();
    }
}

} // namespace brimvale
