#include "Views/Window/ApplicationIcon.h"

namespace brimvale {

// If it were set, it would replace the bundle's icon in the Dock, and appear in the title bar like the icon
// of a document.
QIcon applicationIcon() {
    return {};
}

} // namespace brimvale
