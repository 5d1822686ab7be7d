#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "scan": the sized tree of a folder, for reading or as JSON.
extern const Command scanCommand;

} // namespace brimvale::commandLine
