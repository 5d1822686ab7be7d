#pragma once

#include <QFont>

namespace brimvale {

/// The font of the window, and how large its texts are.
struct SystemFont {
    QFont font;       ///< at the body size
    double scale = 1; ///< for `Type::setScale`
};

/// The system's font if it suits such windows, otherwise the bundled one or, if that cannot be loaded, the
/// system's default. Needs the application object.
[[nodiscard]] SystemFont systemFont();

} // namespace brimvale
