#pragma once

#include "Core/Apps/InstalledApp.h"

#include <string>
#include <string_view>

namespace brimvale::linuxApps {

/// Whether one of the processes in `processes`, a folder like "/proc", is of this application: by the control
/// group that the desktop, Flatpak or snap has put it in, by its program file, or by the AppImage that has
/// started it.
[[nodiscard]] bool isRunningIn(const std::string &processes, const InstalledApp &app);

/// The identifier of the application that a control group is for, such as "org.example.App" for
/// "app-gnome-org.example.App-1234.scope"; empty where it is for none. That of a snap is its name.
[[nodiscard]] std::string applicationOfGroup(std::string_view group);

} // namespace brimvale::linuxApps
