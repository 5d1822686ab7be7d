#pragma once

#include "Base/Options.h"

#include <span>

namespace brimvale::commandLine {

/// The options before the command.
[[nodiscard]] std::span<const Option> programOptions();

/// Runs the command line tool with these words, without its own name before them; returns its exit status.
[[nodiscard]] int runBrimvalectl(std::span<const char *const> words);

} // namespace brimvale::commandLine
