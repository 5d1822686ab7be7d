#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>

namespace brimvale {

/// The progress of one scan, shared by its workers and whoever watches it. Every figure is read and written
/// under the lock; `cancelled`, which is asked before every entry, is an atomic flag instead.
class ScanStats {
public:
    /// Files counted so far, without further names of a file already counted.
    [[nodiscard]] std::int64_t files() const;
    /// Allocated bytes counted so far.
    [[nodiscard]] std::int64_t bytes() const;
    /// Entries that could not be read.
    [[nodiscard]] std::int64_t unreadable() const;
    /// The path of the folder near the scan's root that was entered last.
    [[nodiscard]] std::string current() const;
    /// Whether the scan is to stop.
    [[nodiscard]] bool cancelled() const { return cancelled_.load(std::memory_order_relaxed); }

    void add(std::int64_t files, std::int64_t bytes);
    void addUnreadable();
    void setCurrent(const std::string &path);
    /// Stops the scan: the workers end before their next entry.
    void cancel() { cancelled_.store(true, std::memory_order_relaxed); }
    /// What `cancel` sets, for whoever may do no more than set it, such as a signal handler.
    [[nodiscard]] std::atomic<bool> &cancelFlag() { return cancelled_; }

private:
    mutable std::mutex lock_;
    std::int64_t files_ = 0;
    std::int64_t bytes_ = 0;
    std::int64_t unreadable_ = 0;
    std::string current_;
    std::atomic<bool> cancelled_ = false;
};

} // namespace brimvale
