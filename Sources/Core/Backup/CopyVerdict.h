#pragma once

#include "Base/Date.h"
#include "Core/Backup/ArchivedItem.h"
#include "Core/Backup/CopyComparison.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// How one item was copied.
struct CopyRun {
    Date started{};
    std::string words;       ///< the output of the copier
    bool hasFailed = false;  ///< whether the copier reported an error
    bool bytesDecide = true; ///< whether equal bytes are enough, whatever the sizes
};

/// Judges a copy, in sentences for the user.
namespace CopyVerdict {

/// Whether a copy failed because it is too small (allocated bytes). A copy may be 2 % smaller, because it may
/// be stored more tightly; any copy of an empty original is accepted.
[[nodiscard]] bool isTooShort(std::int64_t originalBytes, std::int64_t copiedBytes);

/// The reason in the copier's output: the text after the last colon in the line with `path`, or in the first
/// line. Can be empty.
[[nodiscard]] std::string causeIn(const std::string &words, const std::string &path);

/// Why the copy is not good, as sentences: it is too small, or an entry in it differs. Nothing if it is good.
[[nodiscard]] std::optional<std::string> failure(const ArchivedItem &item, const CopyComparison &comparison,
                                                 const CopyRun &run);

/// Sentences about a good copy: lost permissions, dates and extended attributes, errors of the copier.
[[nodiscard]] std::vector<std::string> remarks(const ArchivedItem &item, const CopyComparison &comparison,
                                               const CopyRun &run);

/// How one entry of the copy differs, without a full stop.
[[nodiscard]] std::string differenceText(const ArchivedItem &item, const CopyComparison &comparison,
                                         const CopyDifference &difference, const CopyRun &run);

} // namespace CopyVerdict

} // namespace brimvale
