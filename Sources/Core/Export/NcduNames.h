#pragma once

#include <string_view>

namespace brimvale::NcduNames {

// Words of ncdu's export that are both written and read.
inline constexpr std::string_view leftOut = "pattern"; ///< why an entry is left out: for its name
inline constexpr std::string_view otherVolume = "otherfs";
inline constexpr std::string_view filesInAggregate = "brimvale_files"; ///< our own

} // namespace brimvale::NcduNames
