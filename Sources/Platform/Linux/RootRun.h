#pragma once

#include "Base/Result.h"
#include "Platform/PrivilegedRunner.h"
#include "Platform/ProcessRunner.h"
#include "Platform/Tools.h"

#include <string>
#include <vector>

namespace brimvale {

/// Runs a program, the first of these words, as root after the user has been asked for permission. It reads
/// `input` from its standard input. What it printed and how it ended, or why it was not run: the user
/// dismissed the question, permission was refused, or the program could not be started. One at a time; others
/// wait.
[[nodiscard]] Result<ProcessResult, PrivilegedRunError>
runAsRoot(const std::vector<std::string> &words, const std::string &input, const Tools &tools);

} // namespace brimvale
