#pragma once

#include "Base/Date.h"
#include "Core/Backup/ArchiveProgress.h"
#include "Core/Backup/ArchivedItem.h"
#include "Core/Backup/PendingDeletion.h"
#include "Core/Backup/VerifiedBackup.h"
#include "Platform/Host.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brimvale {

/// An entry of an original whose copy is not the same, and how it differs.
struct DifferingEntry {
    FileURL url;
    std::string text; ///< without a full stop

    friend bool operator==(const DifferingEntry &, const DifferingEntry &) = default;
};

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
    /// Entries of originals in `failed` whose copies are not the same.
    std::vector<DifferingEntry> differing = {};
    /// The manifest for later verification; nothing where it could not be written.
    std::optional<FileURL> manifest = {};
    /// Sentences for the user about a backup whose copies are good: what was lost, and what could not be
    /// written and why.
    std::vector<std::string> remarks = {};
    /// The state to compare originals and backup with before originals are removed; null if anything failed.
    std::shared_ptr<const VerifiedBackup> verified = {};
    bool isCancelled = false;
};

/// Copies items aside into a dated folder and checks the copies, so that the originals may go. Never removes
/// or changes an original, and writes nowhere but in that folder.
namespace Archiver {

/// The folder "Brimvale Backups" in the user's documents folder.
[[nodiscard]] FileURL defaultDestination(const Host &host = Host::current());

/// The name of a backup's folder in local time: "Messages 2024-05-01 1015".
[[nodiscard]] std::string folderName(const std::string &label, Date date);

/// Whether two existing items are on the same volume; false if that is unknown. Links are not followed.
[[nodiscard]] bool sameVolume(const FileURL &a, const FileURL &b);

/// Whether the user should look at a copy before its original is removed: it is too small, or the original is
/// empty and the copy is not. False where equal bytes are enough.
[[nodiscard]] bool isMismatched(const ArchivedItem &item);

/// Copies the sources into a new folder for `label` and `date` inside `root` that only its owner can enter.
/// It verifies every copy by its size and its bytes, writes a readable page if there is a Messages database
/// among the copies, and last a manifest. If anything already has the name of that folder, nothing is copied.
/// A source that is a link is copied as a link. Blocks; call it off the main thread. One source that fails
/// does not stop the others. After a cancellation the sources that were not copied are in `failed`, and
/// partial copies stay.
[[nodiscard]] ArchiveResult archive(const std::vector<FileURL> &sources, const std::string &label,
                                    const FileURL &root, const ArchiveWatch &watch = {},
                                    const Host &host = Host::current(), Date date = now());

} // namespace Archiver

} // namespace brimvale
