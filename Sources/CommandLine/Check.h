#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "check": whether the removal guards admit each path.
extern const Command checkCommand;

} // namespace brimvale::commandLine
