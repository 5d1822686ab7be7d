#pragma once

#include <QFont>

namespace brimvale {

/// The typeface that the window is set in, at its body size: the system's own where that is made for windows
/// like this one, else the bundled one, else (it cannot be loaded) whatever the system has. Needs the
/// application object.
[[nodiscard]] QFont applicationFont();

} // namespace brimvale
