#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "overview": volumes, storage categories and System Data, measured.
extern const Command overviewCommand;

} // namespace brimvale::commandLine
