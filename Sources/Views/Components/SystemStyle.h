#pragma once

#include <QFont>

namespace brimvale {

/// The window's font at its body size: the system's font if it suits such windows, otherwise the bundled one
/// or, if that cannot be loaded, the system's default. Needs the application object.
[[nodiscard]] QFont applicationFont();

} // namespace brimvale
