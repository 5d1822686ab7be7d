#pragma once

#include "Catalogs/StorageCategory.h"

#include <QColor>
#include <QString>
#include <optional>
#include <string_view>

namespace brimvale {

/// The icon for a category's symbol key; a folder for an unknown key.
[[nodiscard]] QString categoryIcon(const StorageCategory &category);

/// The icon for a symbol key; nothing if there is none.
[[nodiscard]] std::optional<QString> iconForSymbol(std::string_view symbol);

/// The category's colour, the same in light and dark appearance.
[[nodiscard]] QColor categoryColor(const StorageCategory &category);

} // namespace brimvale
