#pragma once

#include "Core/Update/InstallScript.h"
#include "Platform/Tools.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

namespace brimvale {

/// Why the staged application must not be put in the place of the installed one, in the words of the log;
/// nothing if it may. Both must be application folders that nobody else can exchange, not links; both signed
/// by our own team; and the staged one a newer build of the same program, in an unpack folder on the same
/// volume. Runs tools for a few seconds.
[[nodiscard]] std::optional<std::string> refusalToExchange(const FileURL &staged, const FileURL &current,
                                                           const Tools &tools);

/// What the installer takes from outside.
struct InstallerEnvironment {
    Tools tools;
    std::function<void(const std::string &)> log; ///< takes a line
    std::function<bool(std::int64_t)> isRunning;  ///< whether a process with this identifier runs
    std::chrono::milliseconds pause;              ///< between two looks whether it runs
    std::function<std::error_code(const FileURL &from, const FileURL &to)> rename;

    /// The platform's, with the log of `installation`.
    [[nodiscard]] static InstallerEnvironment current(const Installation &installation);
};

/// Replaces the installed application as the install script does, by renaming: waits for the process to end,
/// verifies, moves the installed one to `current` + ".old" and the staged one to `current`, verifies again,
/// deletes the old one and the unpack folder, and opens the application. Puts the old one back if anything
/// fails. Even if it is interrupted, a working application is at `current` or at `current` + ".old". Returns
/// whether the new one is in place.
///
/// macOS keeps its own tools from changing an application of another maker. So a program of the same team
/// does this, and the script only where that program cannot be used.
[[nodiscard]] bool installUpdate(const Installation &installation, const InstallerEnvironment &environment);

} // namespace brimvale
