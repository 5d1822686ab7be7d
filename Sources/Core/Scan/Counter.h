#pragma once

#include "Base/Bytes.h"

#include <cstdint>
#include <mutex>

namespace brimvale {

/// A counter shared by parallel tasks, with a lock.
class Counter {
public:
    /// Adds `amount` and returns the new value.
    std::int64_t add(std::int64_t amount) {
        const std::lock_guard guard(lock_);
        value_ = checkedAdd(value_, amount);
        return value_;
    }
    [[nodiscard]] std::int64_t value() const {
        const std::lock_guard guard(lock_);
        return value_;
    }

private:
    mutable std::mutex lock_;
    std::int64_t value_ = 0;
};

} // namespace brimvale
