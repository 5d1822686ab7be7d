#pragma once

#include <string_view>

namespace brimvale::commandLine {

/// Puts something in the place of every standard stream that the program was started without, so that no
/// file opened later is taken for it. Reading or writing such a stream fails as it would have. Call it first.
void occupyStandardStreams();

/// One line on standard error: "brimvalectl: " and `sentence`, which is to be harmless there already
/// (`terminalText`).
void printError(std::string_view sentence);

} // namespace brimvale::commandLine
