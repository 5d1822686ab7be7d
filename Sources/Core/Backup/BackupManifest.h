#pragma once

#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Base/StopFlag.h"
#include "Core/Backup/BackedUpEntry.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The list of all entries in a backup, stored in its folder, so that the backup can be verified many years
/// later: a JSON document with the path, size, SHA-256 digest and modification time of every file, the target
/// of every symbolic link, the folders and the special files. All but links have their mode in octal digits.
/// A path that JSON cannot hold exactly is written in hexadecimal digits, under another key.
namespace BackupManifest {

/// Its name in the backup's folder.
constexpr std::string_view fileName = "manifest.json";

/// The document for these entries; incomplete once `cancelled` is set.
[[nodiscard]] std::string document(const std::vector<BackedUpEntry> &entries, const StopFlag &cancelled = {});

/// The entries listed in a document, also in one of the earlier version, which lists only files and links and
/// no modes; nothing where it is no valid manifest.
[[nodiscard]] std::optional<std::vector<BackedUpEntry>> entriesOf(std::string_view document);

/// The entries of the backup in `folder`, sorted by path, without its manifest. `known` are entries whose
/// figures are known; all others are read. Entries at or under one of the `leftOut` paths (relative) are
/// not listed. An error when it is cancelled, or an entry cannot be read.
[[nodiscard]] Result<std::vector<BackedUpEntry>> list(const FileURL &folder, std::vector<BackedUpEntry> known,
                                                      const std::vector<std::string> &leftOut,
                                                      const StopFlag &cancelled);

/// Writes the manifest of the backup in `folder`, atomically, for its owner alone. Nothing is written when it
/// is cancelled.
[[nodiscard]] std::optional<FileError> write(const FileURL &folder, const std::vector<BackedUpEntry> &entries,
                                             const StopFlag &cancelled);

/// The differences between a backup and its manifest. Paths are bytes, relative to the backup's folder, and
/// sorted.
struct Verification {
    std::vector<std::string> missing;
    std::vector<std::string> changed; ///< other bytes, another target or another kind
    std::vector<std::string> extra;   ///< not in the manifest; without folders
    std::vector<std::string> unreadable;
    std::vector<std::string>
        otherModes;           ///< unchanged except for their permissions, which not every disk keeps
    std::size_t verified = 0; ///< unchanged entries, folders included
    bool isCancelled = false;

    /// Whether every file of the backup is present and unchanged.
    [[nodiscard]] bool isIntact() const {
        return missing.empty() && changed.empty() && unreadable.empty() && !isCancelled;
    }
};

/// Reads the entries of a manifest in the backup's folder and compares them. Modification times do not count,
/// because a backup may have been copied elsewhere since. `onRead` is called with the number of bytes of
/// every piece that is read, on several threads. Blocks.
[[nodiscard]] Verification compare(
    const FileURL &folder, const std::vector<BackedUpEntry> &listed, const StopFlag &cancelled = {},
    const std::function<void(std::size_t bytes)> &onRead = [](std::size_t) {});

/// The same with the manifest in the folder. An error where there is none that can be read.
[[nodiscard]] Result<Verification> verify(const FileURL &folder, const StopFlag &cancelled = {});

} // namespace BackupManifest

} // namespace brimvale
