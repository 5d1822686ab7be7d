#pragma once

#include <string>
#include <vector>

namespace brimvale::testing {

/// Everything below a folder, one line each in the order of their names: the path from there, what it is, and
/// its content or target. Equal trees give equal lists; a path without a folder gives none. What may not be
/// read is left out.
[[nodiscard]] std::vector<std::string> listing(const std::string &folder);

} // namespace brimvale::testing
