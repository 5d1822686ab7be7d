#pragma once

#include <QIcon>

namespace brimvale {

/// The program's own picture, as the Dock or a menu of applications shows it.
[[nodiscard]] QIcon programPicture();

/// The icon that the toolkit is to give the running program; null where the system takes it from the bundle.
[[nodiscard]] QIcon applicationIcon();

} // namespace brimvale
