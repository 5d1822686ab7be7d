#pragma once

#include "Platform/Tools.h"

#include <QString>

namespace brimvale {

/// The font that the settings of the desktop name for all programs.
struct DesktopFont {
    QString family; ///< empty where none is named or it is not installed
    double scale =
        1; ///< how much larger it is than the desktop's default, and the user's factor for all texts
};

/// Reads the settings of this desktop: those of GNOME and its relatives from the portal or with a tool,
/// those of KDE and GTK from their files. Waits for the portal for a second at most. Needs the application
/// object.
[[nodiscard]] DesktopFont desktopFont(const Tools &tools = platformTools());

} // namespace brimvale
