#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "backup": copies items into a dated folder and verifies the copies, or verifies an old backup.
extern const Command backupCommand;

} // namespace brimvale::commandLine
