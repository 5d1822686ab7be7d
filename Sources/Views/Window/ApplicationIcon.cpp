#include "Views/Window/ApplicationIcon.h"

// In a static library a resource must be asked for, outside of any namespace.
static void openResources() {
    Q_INIT_RESOURCE(brimvale);
}

namespace brimvale {

QIcon programPicture() {
    openResources();
    return QIcon(QStringLiteral(":/brimvale.svg"));
}

} // namespace brimvale
