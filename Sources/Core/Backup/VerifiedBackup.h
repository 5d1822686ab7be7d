#pragma once

#include "Base/FileURL.h"
#include "Base/StopFlag.h"
#include "Core/Scan/FileListing.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The state of the originals when their copies were compared, and of the backup when it was finished. An
/// original that has changed since must not be removed, because the backup does not hold the change.
struct VerifiedBackup {
    struct Original {
        FileURL source;
        FileListing listing;
    };

    std::vector<Original> originals;
    FileURL folder; ///< of the backup
    FileListing copies;
};

/// How the backup has changed, as a sentence; nothing if every entry is still there with the same kind, size,
/// modification time and identity.
[[nodiscard]] std::optional<std::string> changeOfBackup(const VerifiedBackup &state,
                                                        const StopFlag &cancelled);

/// How the original at `source` has changed, as a sentence: an entry is new, has changed or cannot be read.
/// Nothing if it has not; entries that are gone do not count.
[[nodiscard]] std::optional<std::string> changeOfOriginal(const VerifiedBackup &state, const FileURL &source,
                                                          const StopFlag &cancelled);

} // namespace brimvale
