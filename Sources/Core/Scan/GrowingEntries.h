#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brimvale {

class FSNode;

/// An entry directly in the root of a scan, as far as it has been counted.
struct GrowingRow {
    std::string name; ///< its bytes; empty for the row of all entries that have none of their own
    bool isDirectory = false;
    bool isFinished = false;
    std::int64_t size = 0; ///< allocated bytes so far
    std::int64_t files = 0;

    friend bool operator==(const GrowingRow &, const GrowingRow &) = default;
};

/// The figures of the entries directly in the root of a running scan, for a picture that grows. The threads
/// of the scan add to them without a lock, once for each folder, and other threads may read them at any time.
class GrowingEntries {
public:
    /// So many entries have figures of their own. All others share one row.
    static constexpr std::size_t mostRows = 2000;

    /// The figures of one entry, on a cache line of their own.
    class alignas(64) Entry {
    public:
        Entry(std::string_view name, bool isDirectory) : name_(name), isDirectory_(isDirectory) {}

        /// Adds what was counted in one of its folders.
        void add(std::int64_t files, std::int64_t bytes) {
            files_.fetch_add(files, std::memory_order_relaxed);
            size_.fetch_add(bytes, std::memory_order_relaxed);
        }

        /// One of its folders was read to its end. It has `subfolders` that will be read, too.
        void leaveFolder(std::int64_t subfolders) {
            waiting_.fetch_add(subfolders - 1, std::memory_order_relaxed);
        }

    private:
        friend class GrowingEntries;

        [[nodiscard]] GrowingRow row() const;

        const std::string name_;
        const bool isDirectory_;
        std::atomic<std::int64_t> size_ = 0;
        std::atomic<std::int64_t> files_ = 0;
        std::atomic<std::int64_t> waiting_ = 0; ///< folders not read yet
    };

    /// Adds a folder that will be read, and remembers its node. Thread-safe, like everything here.
    void addFolder(std::string_view name, const FSNode *folder);
    /// Adds a file directly in the root.
    void addFile(std::string_view name, std::int64_t files, std::int64_t bytes);

    /// The entry of a folder that was added; null for any other. Lives as long as this object.
    [[nodiscard]] Entry *entryOf(const FSNode *folder);

    /// A row for each entry, in the order in which they were added; never fewer than before.
    [[nodiscard]] std::vector<GrowingRow> rows() const;

private:
    Entry &add(std::string_view name, bool isDirectory);

    mutable std::mutex lock_; ///< protects the containers, not the figures
    std::deque<Entry> entries_;
    std::unordered_map<const FSNode *, Entry *> byFolder_;
};

} // namespace brimvale
