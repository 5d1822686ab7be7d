#pragma once

#include "Core/Text/Formatting.h"

#include <QString>
#include <cstdint>
#include <string>

namespace brimvale {

/// Words of the program, which are UTF-8; names and paths are for `displayedText`.
[[nodiscard]] inline QString text(const std::string &utf8) {
    return QString::fromStdString(utf8);
}

[[nodiscard]] inline QString sizeText(std::int64_t bytes) {
    return text(Fmt::byteFormatter(bytes));
}

} // namespace brimvale
