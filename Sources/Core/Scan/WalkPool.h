#pragma once

#include "Base/StopFlag.h"
#include "Platform/DirectoryWalk.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace brimvale {

/// Threads that walk folders; most of the program shares one pool. A walk runs on the thread that asked for
/// it, and idle workers take over subfolders that wait in it, so one huge folder keeps all of them busy.
/// There are more threads than cores, because a first walk waits for the disk.
class WalkPool {
public:
    /// Starts fewer workers if the system has no more threads.
    explicit WalkPool(int workerCount);
    ~WalkPool();
    WalkPool(const WalkPool &) = delete;
    WalkPool &operator=(const WalkPool &) = delete;

    /// The number of workers that keeps a disk busy. A low limit on descriptors means fewer workers, never a
    /// folder that cannot be opened.
    [[nodiscard]] static int usualWorkerCount();

    /// The program's pool, created at its first use.
    static WalkPool &shared();

    /// Makes the visitor of one walk, on the thread that runs the walk.
    using MakeVisitor = std::function<std::unique_ptr<WalkVisitor>()>;

    /// Walks everything in `start` and returns when it is done. The calling thread takes part, so this works
    /// from anywhere, from several threads at once, and on a pool without workers.
    void walk(PendingFolders start, bool crossesMountPoints, const StopFlag &cancelled,
              const MakeVisitor &makeVisitor);

    /// The same for several starts, begun in their order; later ones wait while every worker is busy.
    void walk(std::vector<PendingFolders> starts, bool crossesMountPoints, const StopFlag &cancelled,
              const MakeVisitor &makeVisitor);

private:
    struct Job {
        bool crossesMountPoints;
        const StopFlag &cancelled;
        const MakeVisitor &makeVisitor;
        int unfinished; ///< walks that wait or run; protected by the pool's lock
    };
    struct Task {
        Job *job;
        PendingFolders folders;
    };

    void queue(Job &job, PendingFolders folders);
    void work();
    void run(Job &job, PendingFolders folders);
    void offer(Job &job, DirectoryWalk &walk);

    std::mutex lock_;
    std::condition_variable queued_; ///< a task was queued, or the pool closes
    std::condition_variable
        changed_; ///< a task was queued, or a job has ended: for callers that wait for their own
    std::deque<Task> queue_;
    std::atomic<int> idleWorkers_ = 0; ///< idle workers minus queued tasks; written with the lock held
    bool isClosing_ = false;
    std::vector<std::thread> workers_;
};

} // namespace brimvale
