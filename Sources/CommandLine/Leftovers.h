#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "leftovers": the files that one application keeps outside its bundle.
extern const Command leftoversCommand;

} // namespace brimvale::commandLine
