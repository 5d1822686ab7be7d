#include "Views/Window/ApplicationIcon.h"

// Resources of a static library must be initialised by hand, outside of any namespace.
static void openResources() {
    Q_INIT_RESOURCE(brimvale);
}

namespace brimvale {

QIcon programPicture() {
    openResources();
    return QIcon(QStringLiteral(":/brimvale.svg"));
}

} // namespace brimvale
