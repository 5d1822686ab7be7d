#include "Views/Components/DesktopNotification.h"

namespace brimvale {

// The icon in the Dock jumps instead, which needs no permission.
void notifyDesktop(const QString &, const QString &) {}

} // namespace brimvale
