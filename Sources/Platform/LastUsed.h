#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"

#include <optional>

namespace brimvale {

/// When the item was last opened, from the system's search index. Nothing where the index has no date or the
/// system keeps none.
[[nodiscard]] std::optional<Date> lastUsedDate(const FileURL &item);

} // namespace brimvale
