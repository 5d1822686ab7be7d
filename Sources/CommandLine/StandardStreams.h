#pragma once

#include <string_view>

namespace brimvale::commandLine {

/// Replaces every standard stream that was closed when the program started, so that no file opened later
/// takes its place. Reading or writing such a stream still fails. Call it first.
void occupyStandardStreams();

/// Writes one line to standard error: "brimvalectl: " and `sentence`, which must already be harmless on a
/// terminal (`terminalText`).
void printError(std::string_view sentence);

/// Whether a user can be asked: standard input and standard error are terminals.
[[nodiscard]] bool canAsk();

/// Writes a question, which must be harmless on a terminal, to standard error and reads a line from the
/// terminal. Only "y" and "yes" mean yes, in either case; the end of the input means no.
[[nodiscard]] bool confirm(std::string_view question);

} // namespace brimvale::commandLine
