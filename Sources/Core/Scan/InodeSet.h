#pragma once

#include <cstdint>
#include <mutex>
#include <unordered_set>

namespace brimvale {

/// The files with several names that one scan has met, under a lock.
class InodeSet {
public:
    /// Remembers a file; true when it was not yet known.
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
