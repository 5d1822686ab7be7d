#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/RemovalResult.h"
#include "Platform/RemovalProgress.h"
#include "Platform/TrashContents.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// Reading and emptying the Trash of the user on all volumes. Every function blocks, so call it off the main
/// thread.
namespace TrashRun {

/// One item in the Trash.
struct Item {
    CleanupEntry entry;
    TrashRecord record;
};

/// What is in the Trash, the largest first. Nothing on systems whose Trash only their file browser reads.
/// Once `cancelled` is set, what was measured until then.
[[nodiscard]] std::optional<std::vector<Item>> list(const StopFlag &cancelled = {});

/// What the Trash knows about each of these items.
[[nodiscard]] std::unordered_map<FileURL, TrashRecord> records(const std::vector<FileURL> &items,
                                                               const StopFlag &cancelled = {});

/// Deletes these items, and removes the records whose items are gone.
[[nodiscard]] RemovalResult empty(const std::vector<CleanupEntry> &items, RemovalProgress &progress,
                                  RemovalActions &actions);

} // namespace TrashRun

} // namespace brimvale
