#pragma once

#include <optional>
#include <string>

namespace brimvale {

/// The name of the user who owns the entry at an absolute path of any length, as bytes; the user's number if
/// it has no name. Does not follow a link in the last component. Nothing if the entry cannot be read
/// (missing, no permission). May wait for the disk and for the service that knows the users.
[[nodiscard]] std::optional<std::string> ownerOf(const std::string &path);

} // namespace brimvale
