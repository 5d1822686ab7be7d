#pragma once

#include "Core/Apps/InstalledApp.h"

#include <string>
#include <string_view>
#include <vector>

namespace brimvale::linuxApps {

/// The processes that were running when it was made, and the applications that they are of.
class AppProcesses {
public:
    /// Reads the processes in a folder like "/proc".
    explicit AppProcesses(const std::string &folder);

    /// Whether one of them is of this application: by the control group that the desktop, Flatpak or snap has
    /// put it in, by its program file, or by the AppImage that has started it.
    [[nodiscard]] bool haveOneOf(const InstalledApp &app) const;

private:
    struct Process {
        std::string folder;
        std::vector<std::string> applications; ///< identifiers, by its control groups
        std::string program;                   ///< its file; empty where this user may not know it
    };

    std::vector<Process> processes_;
};

/// The identifier of the application that a control group is for, such as "org.example.App" for
/// "app-gnome-org.example.App-1234.scope"; empty where it is for none. That of a snap is its name.
[[nodiscard]] std::string applicationOfGroup(std::string_view group);

} // namespace brimvale::linuxApps
