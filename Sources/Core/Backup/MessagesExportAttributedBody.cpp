#include "Core/Backup/MessagesExport.h"

#include "Base/Text.h"

namespace brimvale::MessagesExport {

namespace {

/// A string is stored as its class name and, a little later, a plus sign, its length and its bytes.
constexpr std::string_view className = "NSString";
constexpr std::string_view bytesMark = "+";
constexpr std::size_t mostBetween = 16;

/// Before a length of 16 bits, lower byte first.
constexpr unsigned char longCountMark = 0x81;

/// Reads the length from the start of `rest` and removes it there.
std::optional<std::size_t> takeCount(std::string_view &rest) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    if (rest.empty())
        return std::nullopt;
    if (byteAt(0) != longCountMark) {
        const std::size_t count = byteAt(0);
        rest.remove_prefix(1);
        return count == 0 ? std::nullopt : std::optional(count);
    }
    if (rest.size() < 3)
        return std::nullopt;
    const std::size_t count = byteAt(1) + std::size_t{256} * byteAt(2);
    rest.remove_prefix(3);
    return count;
}

} // namespace

std::optional<std::size_t> indexOf(std::string_view bytes, std::string_view pattern) {
    const std::size_t index = bytes.find(pattern);
    return index == std::string_view::npos ? std::nullopt : std::optional(index);
}

std::optional<std::string> decodeAttributedBody(std::string_view data) {
    const std::optional<std::size_t> name = indexOf(data, className);
    if (!name)
        return std::nullopt;
    std::string_view rest = data.substr(*name + className.size());
    const std::optional<std::size_t> mark = indexOf(rest.substr(0, mostBetween), bytesMark);
    if (!mark)
        return std::nullopt;
    rest.remove_prefix(*mark + bytesMark.size());
    const std::optional<std::size_t> count = takeCount(rest);
    if (!count || *count > rest.size() || !isValidUtf8(rest.substr(0, *count)))
        return std::nullopt;
    return std::string(rest.substr(0, *count));
}

} // namespace brimvale::MessagesExport
