#pragma once

#include "Core/Backup/PendingDeletion.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/RemovalResult.h"
#include "Platform/RemovalProgress.h"

#include <cstddef>
#include <string>

namespace brimvale {

/// The result of removing the originals of a reviewed backup.
struct ReviewedRemoval {
    RemovalResult result;
    std::size_t keptCount = 0; ///< how many of `result.failed` were kept because of a change
};

/// Removes the originals of a reviewed backup. First the whole backup is read and compared with its manifest.
/// Right before its removal each original is compared with its state at the backup; if it has changed, it is
/// kept and is in `failed` with the reason. All are kept if the backup has changed or is gone, or if their
/// application is running again. Blocks.
[[nodiscard]] ReviewedRemoval removeReviewed(const PendingDeletion &pending, RemovalProgress &progress,
                                             RemovalActions &actions);

/// The status line after the removal.
[[nodiscard]] std::string statusOf(const ReviewedRemoval &removal, const PendingDeletion &pending);

} // namespace brimvale
