#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "apps": the installed applications and, if asked, what they and their leftovers take.
extern const Command appsCommand;

} // namespace brimvale::commandLine
