#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "snapshots": the local snapshots of a volume.
extern const Command snapshotsCommand;

} // namespace brimvale::commandLine
