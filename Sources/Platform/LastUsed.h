#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"

#include <optional>

namespace brimvale {

/// When the item was last opened, as the system's search index knows. Nothing where it does not know, or
/// where the system keeps no such date; no other source is asked.
[[nodiscard]] std::optional<Date> lastUsedDate(const FileURL &item);

} // namespace brimvale
