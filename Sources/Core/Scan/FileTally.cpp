#include "Core/Scan/FileTally.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace brimvale {

namespace {

constexpr std::uint64_t more = 128; ///< set in every byte of a number but the last

void append(std::string &bytes, std::uint64_t number) {
    for (; number >= more; number >>= 7U)
        bytes.push_back(static_cast<char>(number | more));
    bytes.push_back(static_cast<char>(number));
}

std::uint64_t take(const char *&bytes) {
    std::uint64_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<std::uint8_t>(*bytes++);
        number |= (byte & (more - 1)) << shift;
        if (byte < more)
            return number;
    }
}

} // namespace

FileTally::FileTally(std::span<const FileTallyEntry> entries) {
    if (entries.empty())
        return;
    std::string bytes; // few enough for no memory of its own, mostly
    append(bytes, entries.size());
    for (const FileTallyEntry &entry : entries) {
        append(bytes,
               static_cast<std::size_t>(entry.type) * fileAgeCount + static_cast<std::size_t>(entry.age));
        append(bytes, static_cast<std::uint64_t>(entry.count));
        append(bytes, static_cast<std::uint64_t>(entry.bytes));
    }
    packed_ = PackedText(bytes);
}

std::vector<FileTallyEntry> FileTally::entries() const {
    if (packed_.empty())
        return {};
    const char *next = packed_.view().data();
    std::vector<FileTallyEntry> entries(take(next));
    for (FileTallyEntry &entry : entries) {
        const std::uint64_t place = take(next);
        entry.type = static_cast<FileType>(place / fileAgeCount);
        entry.age = static_cast<FileAge>(place % fileAgeCount);
        entry.count = static_cast<std::int64_t>(take(next));
        entry.bytes = static_cast<std::int64_t>(take(next));
    }
    return entries;
}

void FileTally::subtract(FileType type, FileAge age, std::int64_t bytes) {
    std::vector<FileTallyEntry> left = entries();
    const auto found = std::find_if(left.begin(), left.end(), [&](const FileTallyEntry &entry) {
        return entry.type == type && entry.age == age && entry.bytes >= bytes;
    });
    if (found == left.end())
        return;
    found->bytes -= bytes;
    if (--found->count == 0)
        left.erase(found);
    *this = FileTally(left);
}

} // namespace brimvale
