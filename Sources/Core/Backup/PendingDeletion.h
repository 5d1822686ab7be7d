#pragma once

#include "Base/FileURL.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Backup/ArchivedItem.h"
#include "Core/Backup/VerifiedBackup.h"
#include "Core/Removal/RemovalResult.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A backup that the user reviews before its originals are removed.
struct PendingDeletion {
    FileURL destination; ///< the backup's folder
    std::vector<ArchivedItem> items = {};
    std::vector<CleanupEntry> entries = {}; ///< the items to remove
    std::int64_t bytes = 0;                 ///< copied in total
    RemovalMode mode = RemovalMode::trash;
    std::optional<FileURL> readableExport = {};
    bool sameVolumeAsSource = false;
    std::vector<std::string> remarks = {}; ///< sentences for the user about the backup
    /// The state to compare originals and backup with before the removal; without it the originals stay.
    std::shared_ptr<const VerifiedBackup> verified = {};
    /// Bundle identifier of the application that must not run during the removal.
    std::optional<std::string> quitFirst = {};

    friend bool operator==(const PendingDeletion &, const PendingDeletion &) = default;
};

} // namespace brimvale
