#pragma once

#include "Base/FileURL.h"
#include "Platform/Host.h"

#include <optional>
#include <string>

namespace brimvale {

/// The path by which the user knows an item: the standardised form, and of an item in a folder with two names
/// (`JoinedFolders`) the usual one. Only where both names lead to the same folder on this disk.
[[nodiscard]] FileURL usualPath(const FileURL &item, System system = Host::currentSystem());

/// The other path of an item with this usual path, if it is in a folder with two names. Does not read the
/// disk.
[[nodiscard]] std::optional<std::string> pathOnJoinedVolume(const std::string &path,
                                                            System system = Host::currentSystem());

} // namespace brimvale
