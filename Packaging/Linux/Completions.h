#pragma once

#include <string>

namespace brimvale::packaging {

// What a shell offers when a command line of brimvalectl is completed: the commands and their options, made
// from the tables of the help, and paths.

[[nodiscard]] std::string bashCompletion();
[[nodiscard]] std::string zshCompletion();
[[nodiscard]] std::string fishCompletion();

} // namespace brimvale::packaging
