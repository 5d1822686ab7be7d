#pragma once

#include "Base/StopFlag.h"
#include "Core/Backup/BackedUpEntry.h"
#include "Core/Scan/FileListing.h"

#include <functional>
#include <string>
#include <vector>

namespace brimvale {

/// An entry of an original whose copy is not the same.
struct CopyDifference {
    enum class Kind {
        missing,
        otherKind,    ///< such as a folder in the place of a file
        otherContent, ///< other bytes, or a link that leads elsewhere
        unreadable    ///< the original or the copy
    };

    std::string path; ///< relative to the original; empty for the original itself
    Kind kind = Kind::missing;
};

/// The result of comparing an original with its copy. All paths are relative to the original.
struct CopyComparison {
    FileListing originals;                     ///< their state right before the comparison
    std::vector<BackedUpEntry> copies;         ///< the readable ones, as the backup holds them
    std::vector<CopyDifference> differing;     ///< by path
    std::vector<std::string> otherModes;       ///< the same content with other permissions, or another date
    std::vector<std::string> lesserAttributes; ///< the same content without all extended attributes
};

/// Compares every entry of the original at `source` with its copy at `destination` (absolute paths): its
/// kind, files byte for byte and from the disk where the system allows that, and what belongs to it beside
/// its content. `relativePath` is where the copy is in the backup. What only the copy has is no difference.
/// Works on several threads; once `cancelled` is set the result is of no use.
[[nodiscard]] CopyComparison compareCopy(const std::string &source, const std::string &destination,
                                         const std::string &relativePath, const StopFlag &cancelled);

} // namespace brimvale
