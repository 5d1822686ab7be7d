#pragma once

#include "Catalogs/StorageCategory.h"

#include <QColor>
#include <QString>
#include <optional>
#include <string_view>

namespace brimvale {

/// The icon of the window's set that stands for a category's symbol key; a folder where nobody knows the key.
[[nodiscard]] QString categoryIcon(const StorageCategory &category);

/// The icon for a symbol key; nothing where there is none.
[[nodiscard]] std::optional<QString> iconForSymbol(std::string_view symbol);

/// The category's colour, the same in every appearance.
[[nodiscard]] QColor categoryColor(const StorageCategory &category);

} // namespace brimvale
