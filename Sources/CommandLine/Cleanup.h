#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "cleanup": the cleanup targets, measured.
extern const Command cleanupCommand;

} // namespace brimvale::commandLine
