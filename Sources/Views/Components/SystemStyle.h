#pragma once

#include <QColor>
#include <QFont>
#include <optional>

namespace brimvale {

/// The typeface that the window is set in, at its body size: the system's own where that is made for windows
/// like this one, else the bundled one, else (it cannot be loaded) whatever the system has. Needs the
/// application object.
[[nodiscard]] QFont applicationFont();

/// The colour that the user has chosen for what is selected or can be pressed, in all applications; nothing
/// where the system has no such choice.
[[nodiscard]] std::optional<QColor> systemAccent();

} // namespace brimvale
