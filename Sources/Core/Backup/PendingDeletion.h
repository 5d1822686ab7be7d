#pragma once

#include "Base/FileURL.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Backup/ArchivedItem.h"
#include "Core/Removal/RemovalResult.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace brimvale {

/// A backup that the user reviews before its originals are removed.
struct PendingDeletion {
    FileURL destination; ///< the backup's folder
    std::vector<ArchivedItem> items;
    std::vector<CleanupEntry> entries; ///< the items to remove
    std::int64_t bytes = 0;            ///< copied in total
    RemovalMode mode = RemovalMode::trash;
    std::optional<FileURL> readableExport;
    bool sameVolumeAsSource = false;
    std::vector<FileURL> differing; ///< originals whose copies hold other bytes

    friend bool operator==(const PendingDeletion &, const PendingDeletion &) = default;
};

} // namespace brimvale
