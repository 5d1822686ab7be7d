#pragma once

#include <QIcon>

namespace brimvale {

/// The program's icon, as the Dock or an application menu shows it.
[[nodiscard]] QIcon programPicture();

/// The icon to set on the running program; null if the system takes it from the bundle.
[[nodiscard]] QIcon applicationIcon();

} // namespace brimvale
