#pragma once

#include "Catalogs/CleanupEntry.h"

#include <QString>
#include <cstdint>
#include <vector>

namespace brimvale {

/// What the questions say where items are deleted immediately and there is no other warning.
inline constexpr const char *cannotBeUndone = "This can’t be undone.";

/// The text for the selected rows and their bytes: "3 items selected, 4.2 GB", or "Nothing selected".
[[nodiscard]] QString selectionText(std::int64_t count, std::int64_t bytes);

/// The title of the button that asks for a removal: "Remove 3 Items, 4.2 GB…", or "Remove…" for none.
[[nodiscard]] QString removalTitle(std::int64_t count, std::int64_t bytes);

/// What deleting these entries for good means: "This deletes 3 items, 4.2 GB. It can't be undone."
[[nodiscard]] QString deletionText(const std::vector<CleanupEntry> &entries);

} // namespace brimvale
