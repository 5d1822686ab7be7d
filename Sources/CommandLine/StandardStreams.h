#pragma once

#include <string_view>

namespace brimvale::commandLine {

/// Replaces every standard stream that was closed when the program started, so that no file opened later
/// takes its place. Reading or writing such a stream still fails. Call it first.
void occupyStandardStreams();

/// Writes one line to standard error: "brimvalectl: " and `sentence`, which must already be harmless on a
/// terminal (`terminalText`).
void printError(std::string_view sentence);

} // namespace brimvale::commandLine
