#include "Views/Components/SystemAccent.h"

namespace brimvale {

std::optional<QColor> systemAccent() {
    return std::nullopt;
}

} // namespace brimvale
