#pragma once

#include "Catalogs/CleanupTarget.h"
#include "Core/Removal/RemovalResult.h"

#include <string>
#include <string_view>

namespace brimvale {

/// The label of a risk's badge: "Safe".
[[nodiscard]] std::string_view label(CleanupRisk risk);

/// The name of a risk's colour: "green", "orange" or "red".
[[nodiscard]] std::string_view colorName(CleanupRisk risk);

/// The warning in the confirmation before something of that risk is removed.
[[nodiscard]] std::string removalWarning(CleanupRisk risk, RemovalMode mode);

} // namespace brimvale
