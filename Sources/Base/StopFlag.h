#pragma once

#include <atomic>
#include <memory>

namespace brimvale {

/// Asks long work to stop early. All copies are the same flag: the work looks at it between two steps, and
/// anyone who holds a copy may set it. Once set, it stays set. Thread-safe.
class StopFlag {
public:
    /// Safe in a signal handler, too.
    void set() const noexcept { isSet_->store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isSet() const noexcept { return isSet_->load(std::memory_order_relaxed); }

private:
    std::shared_ptr<std::atomic<bool>> isSet_ = std::make_shared<std::atomic<bool>>(false);
};

} // namespace brimvale
