#include "Core/Apps/Linux/AppFinders.h"

#include <cstring>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t alignment = 8;

/// The bytes that each offset at the end of a container of this size takes.
std::size_t offsetWidth(std::size_t size) {
    if (size <= 0xFF)
        return 1;
    return size <= 0xFFFF ? 2 : 4;
}

std::uint64_t littleEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i > 0; --i)
        value = (value << 8) | static_cast<unsigned char>(bytes[i - 1]);
    return value;
}

std::uint64_t bigEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (const char byte : bytes)
        value = (value << 8) | static_cast<unsigned char>(byte);
    return value;
}

std::size_t aligned(std::uint64_t at) {
    return static_cast<std::size_t>((at + alignment - 1) / alignment * alignment);
}

/// The text of an entry of the dictionary in these bytes: after its key, aligned, as a variant.
std::string textOfKey(std::string_view bytes, std::string_view key) {
    const std::size_t at = bytes.find(std::string(key) + '\0');
    if (at == std::string_view::npos || at % alignment != 0)
        return "";
    const std::size_t start = aligned(at + key.size() + 1);
    if (start >= bytes.size())
        return "";
    const std::size_t end = bytes.find('\0', start);
    // The type of a variant follows it.
    const bool isText =
        end != std::string_view::npos && bytes.substr(end + 1).starts_with(std::string_view("\0s", 2));
    return isText ? std::string(bytes.substr(start, end - start)) : "";
}

} // namespace

/// The tuple has the type (ssasta{sv}): where its parts of no fixed size end is written at its end, the first
/// part last.
std::optional<FlatpakDeploy> parseFlatpakDeploy(std::string_view bytes) {
    const std::size_t width = offsetWidth(bytes.size());
    if (bytes.size() < 3 * width + sizeof(std::uint64_t))
        return std::nullopt;
    const auto endOf = [&](std::size_t part) {
        return littleEndian(bytes.substr(bytes.size() - (part + 1) * width, width));
    };
    const std::uint64_t originEnd = endOf(0);
    const std::uint64_t subpathsEnd = endOf(2);
    if (originEnd == 0 || originEnd > subpathsEnd || subpathsEnd > bytes.size())
        return std::nullopt;
    const std::size_t size = aligned(subpathsEnd);
    if (size + sizeof(std::uint64_t) > bytes.size())
        return std::nullopt;
    const std::uint64_t installed = bigEndian(bytes.substr(size, sizeof(std::uint64_t)));
    if (installed > static_cast<std::uint64_t>(mostBelievedBytes))
        return std::nullopt;
    const std::string_view origin = bytes.substr(0, static_cast<std::size_t>(originEnd));
    return FlatpakDeploy{.origin = std::string(origin.substr(0, origin.find('\0'))),
                         .installedSize = static_cast<std::int64_t>(installed),
                         .version = textOfKey(bytes, "appdata-version")};
}

} // namespace brimvale::linuxApps
