#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

// The content of a saved scan in blocks, most of them compressed (docs/SAVED-SCAN.md).

/// So much is collected for a block, in bytes.
inline constexpr std::size_t usualBlock = std::size_t{1} << 18;

/// A block with this content, which may be a little more than `usualBlock`.
[[nodiscard]] std::string packedBlock(const std::string &content);

/// What follows the last block.
[[nodiscard]] std::string endOfBlocks();

/// Reads blocks one after the other. Together they hold at most 32 times as much as they take.
class BlockReader {
public:
    /// `blocks` must stay until all are read.
    explicit BlockReader(std::string_view blocks) : rest_(blocks) {}

    /// Appends the content of the next block. False after the last one, and where the blocks are damaged or
    /// claim to hold far more than such blocks do.
    [[nodiscard]] bool appendNext(std::string &content);

    /// Whether the end of the blocks was found, with nothing behind it.
    [[nodiscard]] bool isComplete() const { return isComplete_; }

private:
    std::string_view rest_;
    bool isComplete_ = false;
};

/// Appends a number: seven bits a byte, the lowest first; the highest bit says that more follow.
void appendPackedNumber(std::string &bytes, std::uint64_t value);

/// Takes a number off the beginning of `bytes`; nothing where there is none.
[[nodiscard]] std::optional<std::uint64_t> takePackedNumber(std::string_view &bytes);

} // namespace brimvale
