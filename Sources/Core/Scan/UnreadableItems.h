#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace brimvale {

/// A folder or file that a scan could not read.
struct UnreadableItem {
    std::string path; ///< absolute
    int error = 0;    ///< errno; `claimsTooMuch` where a file claims more than can be true

    static constexpr int claimsTooMuch = -1;

    friend bool operator==(const UnreadableItem &, const UnreadableItem &) = default;
};

/// Why, as a sentence without a full stop: "You don’t have permission to access it".
[[nodiscard]] std::string reasonFor(const UnreadableItem &item);

/// What a scan could not read: all are counted, and the first ones listed. Once not all are listed, it is not
/// known where the others are, so the count stays when some are dropped or replaced. Thread-safe.
class UnreadableItems {
public:
    static constexpr std::size_t mostListed = 10'000;

    void add(std::string path, int error);
    /// Forgets the items that are in the folder or file at `path`, and the item itself.
    void dropWithin(const std::string &path);
    /// Adds those of another scan.
    void add(const UnreadableItems &others);

    [[nodiscard]] std::int64_t count() const;
    [[nodiscard]] std::vector<UnreadableItem> listed() const;
    /// Whether one is in the folder at `path`, or is this folder. True if that is not known, because not all
    /// are listed.
    [[nodiscard]] bool reachInto(const std::string &path) const;

private:
    [[nodiscard]] bool isCut() const { return count_ > static_cast<std::int64_t>(listed_.size()); }

    mutable std::mutex lock_;
    std::int64_t count_ = 0;
    std::vector<UnreadableItem> listed_;
};

} // namespace brimvale
