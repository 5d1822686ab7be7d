#pragma once

#include "Core/Update/InstallScript.h"
#include "Platform/Tools.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The name of brimvalectl's command that runs `installUpdate`.
inline constexpr const char *installCommandName = "install-update";

/// Copies brimvalectl from the staged application into a new folder beside it, from where it can install that
/// application. Nothing where it could not: there is none, it is not ours, it does not start, or
/// `refusalToExchange`. Then the install script does it. Runs tools for a few seconds.
[[nodiscard]] std::optional<FileURL> makeInstaller(const FileURL &staged, const FileURL &current,
                                                   const Tools &tools);

/// The arguments with which it installs.
[[nodiscard]] std::vector<std::string> installerArguments(const Installation &installation);

} // namespace brimvale
