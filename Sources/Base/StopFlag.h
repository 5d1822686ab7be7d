#pragma once

#include <atomic>
#include <memory>

namespace brimvale {

/// Asks long work to stop early. All copies share one flag. The work checks it between two steps, and every
/// holder of a copy may set it. Once set, it stays set. Thread-safe.
class StopFlag {
public:
    /// Also safe in a signal handler.
    void set() const noexcept { isSet_->store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isSet() const noexcept { return isSet_->load(std::memory_order_relaxed); }

private:
    std::shared_ptr<std::atomic<bool>> isSet_ = std::make_shared<std::atomic<bool>>(false);
};

} // namespace brimvale
