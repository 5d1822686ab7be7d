#pragma once

#include <string_view>

namespace brimvale::commandLine {

/// Puts something in the place of every standard stream that the program was started without, so that no
/// file opened later is taken for it. Reading or writing such a stream fails as it would have. Call it first.
void occupyStandardStreams();

/// One line on standard error: "brimvalectl: " and `sentence`, which is to be harmless there already
/// (`terminalText`).
void printError(std::string_view sentence);

/// Whether there is somebody to ask: standard input and standard error are terminals.
[[nodiscard]] bool canAsk();

/// Puts a question, which is harmless on a terminal, on standard error and reads a line from the terminal.
/// Only "y" and "yes" mean yes, in either case; the end of the input means no.
[[nodiscard]] bool confirm(std::string_view question);

} // namespace brimvale::commandLine
