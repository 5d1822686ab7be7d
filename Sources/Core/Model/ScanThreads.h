#pragma once

#include "Base/Background.h"
#include "Core/Scan/WalkPool.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace brimvale {

/// The threads of scans. One may wait in the system for as long as a permission dialog is open or a server
/// does not answer. So each scan has threads and walks of its own, which own everything they use, and nothing
/// waits for them. Belongs to the main thread.
class ScanThreads {
public:
    ScanThreads();
    /// Drops the results that are still to come. Waits a moment for the scans to end, which must have been
    /// cancelled, and leaves those that wait in the system behind.
    ~ScanThreads();
    ScanThreads(const ScanThreads &) = delete;
    ScanThreads &operator=(const ScanThreads &) = delete;

    /// Runs `work` on a new thread with a pool for its walks, and then `use` with its result on the main
    /// thread. Drops the result if `context` is destroyed first. All of it must be copyable.
    template<class Work, class Use>
    void run(QObject *context, Work work, Use use) {
        start([shared = shared_, context = QPointer(context), work = std::move(work),
               use = std::move(use)]() mutable {
            WalkPool pool(WalkPool::usualWorkerCount());
            auto result = work(pool);
            shared->deliver([&] {
                onMainThread(context, [use = std::move(use), result = std::move(result)]() mutable {
                    use(std::move(result));
                });
            });
        });
    }

private:
    /// Outlives the object while threads run.
    struct Shared {
        /// Posts a result, unless the object is gone: then the application may be gone, too.
        void deliver(const std::function<void()> &post);

        std::mutex lock;
        std::condition_variable ended;
        int running = 0;
        bool isClosed = false;
    };

    void start(std::function<void()> work);

    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

} // namespace brimvale
