#include "Views/Components/DesktopDialog.h"

namespace brimvale {

void openInDesktop(QWidget &, DesktopDialog dialog) {
    dialog.otherwise();
}

} // namespace brimvale
