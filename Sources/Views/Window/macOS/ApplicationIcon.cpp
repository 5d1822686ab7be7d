#include "Views/Window/ApplicationIcon.h"

namespace brimvale {

// Set by hand, it would take the place of the bundle's in the Dock, and stand in the title bar like a
// document's.
QIcon applicationIcon() {
    return {};
}

} // namespace brimvale
