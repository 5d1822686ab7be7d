#pragma once

#include <string_view>

namespace brimvale::commandLine {

/// The terminal on which the user is asked.
enum class AskedOn {
    standardStreams,    ///< standard input and standard error, if both are terminals
    controllingTerminal ///< where the program was started, for a command that reads standard input itself
};

/// Whether there is such a terminal.
[[nodiscard]] bool canAsk(AskedOn terminal);

/// Writes a question, which must be harmless on a terminal, and reads a line. What was typed before the
/// question is dropped. Only "y" and "yes" mean yes, in either case; the end of the input means no.
[[nodiscard]] bool confirm(std::string_view question, AskedOn terminal);

} // namespace brimvale::commandLine
