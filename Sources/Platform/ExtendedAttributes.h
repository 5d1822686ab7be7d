#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// The names of the extended attributes (including access lists) of the entry at `original` that the one at
/// `copy` does not have, or has with another value. Paths are absolute; links are not followed. Attributes
/// that the system sets itself are left out, and so are unreadable ones.
[[nodiscard]] std::vector<std::string> lostAttributes(const std::string &original, const std::string &copy);

} // namespace brimvale
