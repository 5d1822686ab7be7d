#pragma once

#include "Core/Model/ScanSession.h"
#include "Core/Scan/DiskScanner.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace brimvale::testing {

/// Scans like the scanner. While scans are held, they have counted everything, but do not return.
class HeldScan {
public:
    ~HeldScan() { hold(false); }

    void hold(bool isHeld) {
        const std::lock_guard guard(shared_->lock);
        shared_->isHeld = isHeld;
        shared_->changed.notify_all();
    }

    /// Changes what each scan finds, on its thread; set it before the first scan.
    using Change = std::function<void(FSNode &root, ScanStats &stats)>;

    [[nodiscard]] ScanSession::Scan scan(Change change = {}) const {
        return [shared = shared_, change = std::move(change)](
                   const std::string &root, const ScanOptions &options, ScanStats &stats, WalkPool &pool) {
            auto found = DiskScanner::scan(root, options, stats, pool);
            if (change)
                change(*found, stats);
            std::unique_lock guard(shared->lock);
            shared->changed.wait(guard, [&] { return !shared->isHeld; });
            return found;
        };
    }

private:
    struct Shared {
        std::mutex lock;
        std::condition_variable changed;
        bool isHeld = false;
    };

    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

} // namespace brimvale::testing
