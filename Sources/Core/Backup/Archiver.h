#pragma once

#include "Base/Date.h"
#include "Base/StopFlag.h"
#include "Core/Backup/ArchivedItem.h"
#include "Core/Backup/PendingDeletion.h"
#include "Platform/Host.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brimvale {

/// The outcome of a backup. Every source is in `copied` or in `failed`.
struct ArchiveResult {
    /// The dated folder of the backup.
    FileURL destination;
    /// Originals whose copies were verified.
    std::vector<FileURL> copied = {};
    /// The other originals, each with a readable reason.
    std::vector<std::pair<FileURL, std::string>> failed = {};
    /// Allocated bytes of the copies in `items`.
    std::int64_t bytes = 0;
    /// One per original in `copied`.
    std::vector<ArchivedItem> items = {};
    /// The readable page of the conversations, if one was written.
    std::optional<FileURL> readableExport = {};
    /// Files in `copied`, or inside its folders, whose copies have different bytes.
    std::vector<FileURL> differing = {};
    /// The manifest for later verification; nothing if it could not be written.
    std::optional<FileURL> manifest = {};
    bool isCancelled = false;
};

/// The progress of a backup.
struct ArchiveProgress {
    enum class Phase { copying, comparing, finishing };

    Phase phase = Phase::copying;
    std::size_t item = 0;   ///< index of the current source
    std::int64_t bytes = 0; ///< allocated by all copies so far, including the current one
};

/// Observes a backup, and may stop it.
struct ArchiveWatch {
    StopFlag cancelled = {};
    /// Called for every item, and about twice a second while one is copied, on the thread that archives.
    std::function<void(const ArchiveProgress &)> onProgress = [](const ArchiveProgress &) {};
};

/// Copies items into a dated folder and verifies the copies, so that the originals can be removed. Never
/// removes or changes an original, and writes only in that folder.
namespace Archiver {

/// The folder "Brimvale Backups" in the user's documents folder.
[[nodiscard]] FileURL defaultDestination(const Host &host = Host::current());

/// The name of a backup's folder in local time: "Messages 2024-05-01 1015".
[[nodiscard]] std::string folderName(const std::string &label, Date date);

/// Whether two existing items are on the same volume; false if that is unknown. Links are not followed.
[[nodiscard]] bool sameVolume(const FileURL &a, const FileURL &b);

/// Whether a copy failed because it is too small (allocated bytes). A copy may be 2 % smaller than its
/// original, because it may be stored more compactly. Any copy of an empty original is accepted.
[[nodiscard]] bool isTooShort(std::int64_t originalBytes, std::int64_t copiedBytes);

/// Whether the user should check a copy before its original is removed. Stricter than `isTooShort`: the copy
/// of an empty original must be empty.
[[nodiscard]] bool isMismatched(const ArchivedItem &item);

/// Copies the sources into a folder for `label` and `date` inside `root`, or adds to that folder if it
/// exists. Verifies every copy by its size and its bytes, writes a readable page if there is a Messages
/// database among the copies, and the manifest last. Blocks; call it off the main thread. One failed source
/// does not stop the others. After a cancellation, sources that were not copied are in `failed`, and partial
/// copies stay.
[[nodiscard]] ArchiveResult archive(const std::vector<FileURL> &sources, const std::string &label,
                                    const FileURL &root, const ArchiveWatch &watch = {},
                                    const Host &host = Host::current(), Date date = now());

} // namespace Archiver

} // namespace brimvale
