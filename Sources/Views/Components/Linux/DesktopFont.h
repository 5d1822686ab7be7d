#pragma once

#include <QString>

namespace brimvale {

/// The family of the font that the settings of the desktop name, as far as a file says so; empty where none
/// is named or it is not installed. Needs the application object.
[[nodiscard]] QString desktopFontFamily();

} // namespace brimvale
