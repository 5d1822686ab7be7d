#pragma once

#include "Core/Text/Formatting.h"

#include <QString>
#include <cstdint>
#include <string>

namespace brimvale {

/// Texts of the program, which are UTF-8. For names and paths use `displayedText`.
[[nodiscard]] inline QString text(const std::string &utf8) {
    return QString::fromStdString(utf8);
}

[[nodiscard]] inline QString sizeText(std::int64_t bytes) {
    return text(Fmt::byteFormatter(bytes));
}

/// A number with its noun: "1 file", "2,345 files".
[[nodiscard]] inline QString counted(std::int64_t count, const char *noun) {
    return text(Fmt::counted(count, noun));
}

} // namespace brimvale
