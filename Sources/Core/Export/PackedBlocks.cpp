#include "Core/Export/PackedBlocks.h"

#include <QByteArray>

namespace brimvale {

namespace {

constexpr int fastest = 1;                             ///< level of compression
constexpr std::uint64_t mostShrunk = 32;               ///< blocks that shrink more are stored as they are
constexpr std::uint64_t largestBlock = 4 * usualBlock; ///< that is read
constexpr qsizetype lengthBytes = 4;                   ///< with which Qt begins compressed data

/// The length of the content as Qt has it: the highest byte first.
QByteArray lengthForQt(std::uint64_t length) {
    QByteArray bytes;
    for (unsigned shift = 32; shift > 0;) {
        shift -= 8;
        bytes.append(static_cast<char>(length >> shift & 0xFFU));
    }
    return bytes;
}

/// Appends the content of one block, which is stored as `packed`.
bool unpack(std::string_view packed, std::uint64_t length, std::string &content) {
    if (length > largestBlock || length > mostShrunk * packed.size())
        return false;
    QByteArray bytes = lengthForQt(length);
    bytes.append(packed.data(), static_cast<qsizetype>(packed.size()));
    const QByteArray unpacked = qUncompress(bytes);
    content.append(unpacked.constData(), static_cast<std::size_t>(unpacked.size()));
    return static_cast<std::uint64_t>(unpacked.size()) == length;
}

} // namespace

std::string packedBlock(const std::string &content) {
    std::string block;
    appendPackedNumber(block, content.size());
    const QByteArray packed = qCompress(reinterpret_cast<const uchar *>(content.data()),
                                        static_cast<qsizetype>(content.size()), fastest)
                                  .mid(lengthBytes);
    const auto length = static_cast<std::size_t>(packed.size());
    if (length >= content.size() || content.size() > mostShrunk * length) {
        appendPackedNumber(block, 0);
        return block.append(content);
    }
    appendPackedNumber(block, length);
    return block.append(packed.constData(), length);
}

std::string endOfBlocks() {
    return std::string(1, '\0');
}

bool BlockReader::appendNext(std::string &content) {
    const std::optional<std::uint64_t> length = takePackedNumber(rest_);
    if (!length || *length == 0) {
        isComplete_ = length && rest_.empty();
        return false;
    }
    const std::optional<std::uint64_t> packed = takePackedNumber(rest_);
    const std::uint64_t stored = packed.value_or(0) > 0 ? *packed : *length;
    if (!packed || stored > rest_.size())
        return false;
    const std::string_view bytes = rest_.substr(0, stored);
    rest_.remove_prefix(stored);
    if (*packed > 0)
        return unpack(bytes, *length, content);
    content.append(bytes);
    return true;
}

void appendPackedNumber(std::string &bytes, std::uint64_t value) {
    for (; value >= 0x80; value >>= 7)
        bytes += static_cast<char>(value | 0x80);
    bytes += static_cast<char>(value);
}

std::optional<std::uint64_t> takePackedNumber(std::string_view &bytes) {
    std::uint64_t value = 0;
    constexpr unsigned bits = 64;
    for (unsigned shift = 0; shift < bits && !bytes.empty(); shift += 7) {
        const auto next = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        value |= std::uint64_t{next & 0x7FU} << shift;
        if (next < 0x80)
            return value;
    }
    return std::nullopt;
}

} // namespace brimvale
