#pragma once

#include "Catalogs/FileTypes.h"
#include "Core/Scan/FileAge.h"
#include "Core/Scan/PackedText.h"

#include <cstdint>
#include <span>
#include <vector>

namespace brimvale {

/// How many files of one type and age there are, and their allocated bytes.
struct FileTallyEntry {
    FileType type = FileType::other;
    FileAge age = FileAge::unknown;
    std::int64_t count = 0;
    std::int64_t bytes = 0;

    friend bool operator==(const FileTallyEntry &, const FileTallyEntry &) = default;
};

/// The small files of one folder by type and age, in a few bytes, because a tree has very many of these.
class FileTally {
public:
    FileTally() = default;
    explicit FileTally(std::span<const FileTallyEntry> entries);

    /// One for each type and age that there is.
    [[nodiscard]] std::vector<FileTallyEntry> entries() const;

    /// Takes one file off. Does nothing if no such file was counted.
    void subtract(FileType type, FileAge age, std::int64_t bytes);

private:
    /// The number of entries, then type and age, count and bytes of each, as numbers of seven bits a byte,
    /// the lowest first; the last byte of a number is below 128. Empty for none.
    PackedText packed_;
};

} // namespace brimvale
