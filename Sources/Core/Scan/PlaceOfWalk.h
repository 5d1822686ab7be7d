#pragma once

#include <string>

namespace brimvale {

/// The path at which a walk of the folder at `path` (absolute) begins: its usual path, unless that is a link.
/// On a Mac "/var" is a link to "/private/var", whose standardised form is "/var".
[[nodiscard]] std::string placeOfWalk(const std::string &path);

} // namespace brimvale
