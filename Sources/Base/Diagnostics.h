#pragma once

#include <string>

namespace brimvale {

/// Sets where the last words of the program go beside standard error: a function that never throws.
void setDiagnosticLog(void (*write)(const std::string &line));

/// Ends the program because of a fault in it or in its installation, and tells `reason` (without a full
/// stop).
[[noreturn]] void endProgram(const std::string &reason);

} // namespace brimvale
