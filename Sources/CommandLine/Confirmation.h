#pragma once

#include <string_view>

namespace brimvale::commandLine {

/// Whether there is somebody to ask: standard input and standard error are terminals.
[[nodiscard]] bool canAsk();

/// Puts a question, which is harmless on a terminal, on standard error and reads a line from the terminal.
/// Only "y" and "yes" mean yes, in either case; the end of the input means no.
[[nodiscard]] bool confirm(std::string_view question);

} // namespace brimvale::commandLine
