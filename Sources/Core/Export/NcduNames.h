#pragma once

#include <string_view>

namespace brimvale::NcduNames {

/// A member of our own in ncdu's export: how many files an entry stands for.
inline constexpr std::string_view filesInAggregate = "brimvale_files";

} // namespace brimvale::NcduNames
