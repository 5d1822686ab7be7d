#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "size": the allocated bytes at and under each path.
extern const Command sizeCommand;

} // namespace brimvale::commandLine
