#pragma once

#include "Base/Date.h"
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

/// What became of a backup. Every source stands in `copied` or in `failed`.
struct ArchiveResult {
    /// The dated folder of the backup.
    FileURL destination;
    /// Originals whose copies were verified.
    std::vector<FileURL> copied = {};
    /// The other originals, each with a readable reason.
    std::vector<std::pair<FileURL, std::string>> failed = {};
    /// Allocated by the copies in `items`.
    std::int64_t bytes = 0;
    /// One for each original in `copied`.
    std::vector<ArchivedItem> items = {};
    /// The page of conversations, where one was written.
    std::optional<FileURL> readableExport = {};
    /// Files in `copied`, or in folders there, whose copies do not hold the same bytes.
    std::vector<FileURL> differing = {};
    /// What the backup can be verified with later; nothing where it could not be written.
    std::optional<FileURL> manifest = {};
    bool isCancelled = false;
};

/// How far a backup is.
struct ArchiveProgress {
    enum class Phase { copying, comparing, finishing };

    Phase phase = Phase::copying;
    std::size_t item = 0;   ///< which of the sources, from 0
    std::int64_t bytes = 0; ///< allocated by copies until now, of what is being copied too
};

/// Who watches a backup, and may stop it.
struct ArchiveWatch {
    /// Asked often, from several threads.
    std::function<bool()> isCancelled = [] { return false; };
    /// Told with every item, and about twice a second while one is copied, on the thread that archives.
    std::function<void(const ArchiveProgress &)> onProgress = [](const ArchiveProgress &) {};
};

/// Copies items aside into a dated folder and checks the copies, so that the originals may go. Never removes
/// or changes an original, and writes nowhere but in that folder.
namespace Archiver {

/// The folder "Brimvale Backups" among the user's documents.
[[nodiscard]] FileURL defaultDestination(const Host &host = Host::current());

/// The name of a backup's folder: "Messages 2024-05-01 1015", in local time.
[[nodiscard]] std::string folderName(const std::string &label, Date date);

/// Whether two existing items lie on the same volume; false where that is not known. Links are not followed.
[[nodiscard]] bool sameVolume(const FileURL &a, const FileURL &b);

/// Whether a copy has so much less than its original (allocated bytes) that it failed. What is 2 % smaller
/// may be packed better; an original of nothing is not questioned.
[[nodiscard]] bool isTooShort(std::int64_t originalBytes, std::int64_t copiedBytes);

/// Whether a copy is to be looked at before its original goes. Stricter than `isTooShort`: where the original
/// is nothing, so must be the copy.
[[nodiscard]] bool isMismatched(const ArchivedItem &item);

/// Copies the sources into a folder for `label` and `date` inside `root`, or into that folder as it already
/// is, verifies every copy by its size and its bytes, adds a readable page where there is a Messages database
/// among the copies, and last a manifest. Blocks; call it off the main thread. One source that fails does not
/// stop the others. After a cancellation the sources that were not copied stand in `failed`, and what was
/// copied of them stays where it is.
[[nodiscard]] ArchiveResult archive(const std::vector<FileURL> &sources, const std::string &label,
                                    const FileURL &root, const ArchiveWatch &watch = {},
                                    const Host &host = Host::current(), Date date = now());

} // namespace Archiver

} // namespace brimvale
