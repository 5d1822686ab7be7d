#pragma once

#include <cstdint>
#include <mutex>
#include <unordered_set>

namespace brimvale {

/// The files with several names found by one scan, with a lock.
class InodeSet {
public:
    /// Adds a file; true when it is new.
    [[nodiscard]] bool insert(std::uint64_t device, std::uint64_t inode) {
        const std::uint64_t key = inode ^ (device * 0x9E3779B97F4A7C15U);
        const std::lock_guard guard(lock_);
        return seen_.insert(key).second;
    }

private:
    std::mutex lock_;
    std::unordered_set<std::uint64_t> seen_;
};

} // namespace brimvale
