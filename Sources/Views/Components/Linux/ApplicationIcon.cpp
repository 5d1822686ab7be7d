#include "Views/Components/ApplicationIcon.h"

namespace brimvale {

QIcon applicationIcon() {
    return programPicture();
}

} // namespace brimvale
