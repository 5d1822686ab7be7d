#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "remove": moves items to the Trash or deletes them, after a question.
extern const Command removeCommand;

} // namespace brimvale::commandLine
