#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "update": whether the feed knows a newer build.
extern const Command updateCommand;

} // namespace brimvale::commandLine
