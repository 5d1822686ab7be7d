#pragma once

#include "Catalogs/FileTypes.h"
#include "Core/Scan/FileAge.h"

#include <bitset>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brimvale {

/// Conditions for files, all of which must hold: ">100M older:1y type:video holiday". A size is in K, M, G or
/// T bytes (1 KB = 1,000 bytes), a time in d, w, m or y (a month has 30 days, half a year 182, a year 365).
/// Types are the keys of `FileTypeWords`, with commas between them. Any other word must be in the name,
/// ignoring case; several words in quotation marks are one.
class FileFilter {
public:
    /// What makes a text no filter, as a sentence.
    struct Fault {
        std::string sentence;
    };

    /// Accepts every file.
    FileFilter() { types_.set(); }

    /// Reads a filter; times count back from `moment`, in seconds since 1970.
    [[nodiscard]] static std::variant<FileFilter, Fault> read(std::string_view text, std::uint32_t moment);
    /// The same for single conditions; spaces and quotation marks in one are part of it.
    [[nodiscard]] static std::variant<FileFilter, Fault> read(const std::vector<std::string> &terms,
                                                              std::uint32_t moment);

    [[nodiscard]] bool acceptsAll() const { return !hasWords() && !hasConditions(); }
    /// Whether names matter.
    [[nodiscard]] bool hasWords() const { return !words_.empty(); }
    /// Whether anything but the name matters.
    [[nodiscard]] bool hasConditions() const;

    /// Whether it accepts a file with these figures: allocated bytes, and seconds since 1970 or 0.
    [[nodiscard]] bool acceptsFile(std::string_view name, std::int64_t bytes, std::uint32_t modified) const;

    /// The same for a folder, by the size and the newest change of its contents. Only where names matter, and
    /// types do not.
    [[nodiscard]] bool acceptsFolder(std::string_view name, std::int64_t bytes, std::uint32_t modified) const;

    /// Whether it accepts all files below `limit` bytes of a type and age at `moment`; nothing where that
    /// depends on the file.
    [[nodiscard]] std::optional<bool> acceptsSmall(FileType type, FileAge age, std::int64_t limit,
                                                   std::uint32_t moment) const;

    /// Whether it may accept files of fewer bytes than these.
    [[nodiscard]] bool acceptsBelow(std::int64_t bytes) const { return moreThan_ + 1 < bytes; }

private:
    struct Word {
        std::u16string text; ///< composed, without case
        std::string ascii;   ///< the same, where it has nothing but ASCII
    };

    std::optional<Fault> readTerm(std::string_view term, std::uint32_t moment);
    std::optional<Fault> readSize(std::string_view term);
    std::optional<Fault> readTime(std::string_view term, std::uint32_t moment);
    std::optional<Fault> readTypes(std::string_view keys);
    [[nodiscard]] bool matchesName(std::string_view name) const;
    [[nodiscard]] bool matchesFigures(std::int64_t bytes, std::uint32_t modified) const;

    std::int64_t moreThan_ = -1; ///< bytes
    std::int64_t lessThan_ = std::numeric_limits<std::int64_t>::max();
    std::optional<std::uint32_t> changedBefore_; ///< seconds since 1970
    std::optional<std::uint32_t> changedAfter_;
    std::bitset<fileTypeCount> types_;
    std::vector<Word> words_;
};

} // namespace brimvale
