#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalResult.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The texts that report the outcome of a removal, in the window and in the terminal.
namespace RemovalReport {

/// "Done", or "Finished with problems" if anything failed; "The backup failed" for a backup.
[[nodiscard]] std::string_view title(const RemovalResult &result);

/// "Removed 3 items, reclaiming 1.2 GB"; "Nothing was deleted." after a backup that failed.
[[nodiscard]] std::string summary(const RemovalResult &result);

/// The path and the reason, for display. A reason that begins with the path stands alone.
[[nodiscard]] std::string failureLine(const RemovalResult::Failure &failure);

/// One line per failure. Of five or more only the first four are shown, and a last line gives the number of
/// the others.
[[nodiscard]] std::vector<std::string> failureLines(const RemovalResult &result);

/// “big” was partly deleted: 93,910 of 100,200 items are gone, 10.7 MB freed
[[nodiscard]] std::string partLine(const PartialRemoval &part);

/// The same for every item that was deleted in part, shortened like `failureLines`.
[[nodiscard]] std::vector<std::string> partLines(const RemovalResult &result);

/// The remarks on removed items, each with its path, shortened like `failureLines`.
[[nodiscard]] std::vector<std::string> remarkLines(const RemovalResult &result);

/// The remark on moving to the Trash: "This frees about 4.2 GB. Moving to Trash does not free space until the
/// Trash is emptied."
[[nodiscard]] std::string trashRemark(std::int64_t bytes);

/// Whether deleting these items may free less than their size, and the user is told so. Reads the mount
/// table.
[[nodiscard]] bool freesAtMost(const std::vector<CleanupEntry> &items);

} // namespace RemovalReport

} // namespace brimvale
