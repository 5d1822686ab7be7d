#pragma once

#include "Base/FileError.h"
#include "Base/FileURL.h"
#include "Core/Backup/CopyComparison.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brimvale {

/// The list of all that a backup holds, in its folder, so that many years later it can be told whether the
/// backup is still what it was: a JSON document with the path, size, SHA-256 digest and modification time of
/// every file, and the target of every symbolic link. A path that JSON cannot hold exactly stands there in
/// hexadecimal digits, under another key.
namespace BackupManifest {

/// Its name in the backup's folder.
constexpr std::string_view fileName = "manifest.json";

/// The document for these files.
[[nodiscard]] std::string document(const std::vector<BackedUpFile> &files);

/// The files that a document lists; nothing where it is no such document.
[[nodiscard]] std::optional<std::vector<BackedUpFile>> filesOf(std::string_view document);

/// Writes the manifest of the backup in `folder`, atomically. `known` are files whose figures are at hand;
/// all others are read. What lies at or under one of the `left out` paths (relative) is not listed. Nothing
/// is written when it is cancelled, or a file cannot be read.
[[nodiscard]] std::optional<FileError> write(const FileURL &folder, std::vector<BackedUpFile> known,
                                             const std::vector<std::string> &leftOut,
                                             const std::function<bool()> &isCancelled);

/// How a backup differs from its manifest; all paths are relative to its folder, as bytes, sorted.
struct Verification {
    std::vector<std::string> missing;
    std::vector<std::string> changed; ///< other bytes, another target, or not even of the same kind
    std::vector<std::string> extra;   ///< not in the manifest
    std::vector<std::string> unreadable;
    std::size_t verified = 0; ///< files and links that are as they were
    bool isCancelled = false;

    /// Whether all that was backed up is there and as it was.
    [[nodiscard]] bool isIntact() const {
        return missing.empty() && changed.empty() && unreadable.empty() && !isCancelled;
    }
};

/// Reads everything in the backup's folder and compares it with the manifest. Modification times do not
/// count, for a backup may have been copied elsewhere since. An error where there is no manifest that can be
/// read. Blocks.
[[nodiscard]] std::variant<Verification, FileError> verify(
    const FileURL &folder, const std::function<bool()> &isCancelled = [] { return false; });

} // namespace BackupManifest

} // namespace brimvale
