#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimvale::testing {

/// What every fuzz program defines for itself: inputs to start from, well-formed ones of every kind, and the
/// code that has to take any input without harm.
[[nodiscard]] std::vector<std::string> fuzzSeeds();
void fuzz(std::string_view input);

} // namespace brimvale::testing
