#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "volumes": the mounted volumes and their space.
extern const Command volumesCommand;

} // namespace brimvale::commandLine
