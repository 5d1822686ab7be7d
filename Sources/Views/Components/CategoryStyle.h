#pragma once

#include "Catalogs/StorageCategory.h"

#include <QColor>
#include <QString>

namespace brimvale {

/// The icon of the window's set that stands for a category's symbol key.
[[nodiscard]] QString categoryIcon(const StorageCategory &category);

/// The category's colour, the same in every appearance.
[[nodiscard]] QColor categoryColor(const StorageCategory &category);

} // namespace brimvale
