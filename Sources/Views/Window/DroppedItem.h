#pragma once

#include "Base/FileURL.h"

#include <optional>

class QMimeData;

namespace brimvale {

/// The file or folder that is dragged over the window; nothing for anything else and for several items.
[[nodiscard]] std::optional<FileURL> droppedItem(const QMimeData &data);

} // namespace brimvale
