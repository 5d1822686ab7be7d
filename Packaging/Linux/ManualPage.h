#pragma once

#include <string>

namespace brimvale::packaging {

/// The manual page of brimvalectl for section 1, in groff's man macros, made from the tables that its help is
/// made from. `version` and `date` (YYYY-MM-DD) are those of the release.
[[nodiscard]] std::string manualPage(const std::string &version, const std::string &date);

} // namespace brimvale::packaging
