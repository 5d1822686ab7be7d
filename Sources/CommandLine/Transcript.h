#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "transcript": the conversations of a Messages database as a page for the browser, or as JSON.
extern const Command transcriptCommand;

} // namespace brimvale::commandLine
