#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "treemap": the tiles of a folder's treemap, for reading, as JSON or as a picture.
extern const Command treemapCommand;

} // namespace brimvale::commandLine
