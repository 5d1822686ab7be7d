#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "category": one storage category, measured.
extern const Command categoryCommand;

} // namespace brimvale::commandLine
