#pragma once

#include "Base/StopFlag.h"
#include "Core/Scan/GrowingEntries.h"
#include "Core/Scan/UnreadableItems.h"

#include <cstdint>
#include <mutex>
#include <string>

namespace brimvale {

/// The progress of one scan, shared by its threads and its observers. Every figure is read and written under
/// a lock. `cancelled` is a separate flag, because it is checked before every entry.
class ScanStats {
public:
    /// Files counted so far. A file with several names counts once.
    [[nodiscard]] std::int64_t files() const;
    /// Allocated bytes counted so far.
    [[nodiscard]] std::int64_t bytes() const;
    /// Entries that could not be read.
    [[nodiscard]] std::int64_t unreadable() const;
    /// The path of the last entered folder near the scan's root.
    [[nodiscard]] std::string current() const;
    /// Whether the scan should stop.
    [[nodiscard]] bool cancelled() const { return cancelled_.isSet(); }

    void add(std::int64_t files, std::int64_t bytes);
    /// `error` is the errno of the failure, or `UnreadableItem::claimsTooMuch`.
    void addUnreadable(std::string path, int error);
    void setCurrent(const std::string &path);
    /// Stops the scan: the workers end before their next entry.
    void cancel() { cancelled_.set(); }
    /// The figures of the entries in the scan's root.
    [[nodiscard]] GrowingEntries &growing() { return growing_; }
    /// What could not be read.
    [[nodiscard]] UnreadableItems &unreadableItems() { return unreadable_; }
    /// The flag that `cancel` sets.
    [[nodiscard]] const StopFlag &stopFlag() const { return cancelled_; }

private:
    mutable std::mutex lock_;
    std::int64_t files_ = 0;
    std::int64_t bytes_ = 0;
    std::string current_;
    GrowingEntries growing_;
    UnreadableItems unreadable_;
    StopFlag cancelled_;
};

} // namespace brimvale
