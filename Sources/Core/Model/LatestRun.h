#pragma once

#include "Core/Model/Workers.h"

#include <QObject>
#include <utility>

namespace brimvale {

/// Background work of which only the newest result counts: started again while it runs, it runs once more
/// afterwards, and its first result is not used. Belongs to the main thread.
class LatestRun {
public:
    template<class Work, class Use>
    void start(Workers &workers, QObject *context, Work work, Use use) {
        if (std::exchange(isRunning_, true)) {
            isStale_ = true;
            return;
        }
        workers.run(context, work, [this, &workers, context, work, use, run = ++run_](auto result) {
            if (run != run_)
                return;
            isRunning_ = false;
            if (std::exchange(isStale_, false))
                start(workers, context, work, use);
            else
                use(std::move(result));
        });
    }

    /// What the running work has read has changed since: it runs once more.
    void repeat() { isStale_ = isRunning_; }

    /// The result of the running work is no longer wanted.
    void forget() {
        ++run_;
        isRunning_ = isStale_ = false;
    }

private:
    bool isRunning_ = false;
    bool isStale_ = false;
    int run_ = 0; ///< the number of the latest run
};

} // namespace brimvale
