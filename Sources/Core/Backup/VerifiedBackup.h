#pragma once

#include "Base/FileURL.h"
#include "Base/StopFlag.h"
#include "Core/Backup/BackedUpEntry.h"
#include "Core/Scan/FileListing.h"

#include <cstddef>
#include <cstdint>
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
        bool keepsFileNumbers = true; ///< whether its file system does
    };

    std::vector<Original> originals;
    FileURL folder; ///< of the backup
    FileListing copies;
    bool keepsFileNumbers = true;       ///< whether the file system of the backup does
    std::vector<BackedUpEntry> entries; ///< those of its manifest, sorted by path
};

/// The bytes that `changeOfContents` reads.
[[nodiscard]] std::int64_t bytesOf(const VerifiedBackup &state);

/// How the contents of the backup differ from its manifest, as a sentence; nothing if they are the same.
/// Reads every file; `onRead` is called with the number of bytes of every piece, on several threads. Once
/// `cancelled` is set the answer is of no use.
[[nodiscard]] std::optional<std::string>
changeOfContents(const VerifiedBackup &state, const StopFlag &cancelled,
                 const std::function<void(std::size_t bytes)> &onRead);

/// How the backup has changed, as a sentence; nothing if every entry is still there with the same kind, size,
/// modification time and, where the file system keeps file numbers, identity. Reads no file.
[[nodiscard]] std::optional<std::string> changeOfBackup(const VerifiedBackup &state,
                                                        const StopFlag &cancelled);

/// How the original at `source` has changed, as a sentence: an entry is new, has changed or cannot be read.
/// Nothing if it has not; entries that are gone do not count. A file is read and compared with its digest
/// where only its record in the file system has changed.
[[nodiscard]] std::optional<std::string> changeOfOriginal(const VerifiedBackup &state, const FileURL &source,
                                                          const StopFlag &cancelled);

} // namespace brimvale
