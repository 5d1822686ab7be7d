#include "Views/Window/ApplicationIcon.h"

namespace brimvale {

QIcon applicationIcon() {
    return programPicture();
}

} // namespace brimvale
