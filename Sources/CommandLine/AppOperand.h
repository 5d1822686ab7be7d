#pragma once

#include "Core/Apps/InstalledApp.h"

#include <optional>
#include <string_view>

namespace brimvale::commandLine {

/// The application that the operand names, by its path or an identifier. If none or several match, reports
/// that and returns nothing.
[[nodiscard]] std::optional<InstalledApp> appMeantBy(std::string_view typed);

} // namespace brimvale::commandLine
