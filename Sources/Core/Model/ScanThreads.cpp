#include "Core/Model/ScanThreads.h"

#include <chrono>
#include <system_error>
#include <thread>

namespace brimvale {

namespace {

/// A scan that reads the disk ends much sooner after it was cancelled.
constexpr std::chrono::milliseconds patienceAtEnd{300};

} // namespace

ScanThreads::ScanThreads() = default;

ScanThreads::~ScanThreads() {
    std::unique_lock guard(shared_->lock);
    shared_->isClosed = true;
    shared_->ended.wait_for(guard, patienceAtEnd, [this] { return shared_->running == 0; });
}

void ScanThreads::Shared::deliver(const std::function<void()> &post) {
    const std::lock_guard guard(lock);
    if (!isClosed)
        post();
}

void ScanThreads::start(std::function<void()> work) {
    {
        const std::lock_guard guard(shared_->lock);
        ++shared_->running;
    }
    auto run = [shared = shared_, work = std::make_shared<std::function<void()>>(std::move(work))]() mutable {
        (*work)();
        work.reset(); // with all that the scan has made
        const std::lock_guard guard(shared->lock);
        --shared->running;
        shared->ended.notify_all();
    };
    try {
        std::thread(run).detach();
    } catch (const std::system_error &) {
        // The system has no thread to spare. One of those that exist does the work when it is free.
        QThreadPool::globalInstance()->start(run);
    }
}

} // namespace brimvale
