#pragma once

#include "CommandLine/Command.h"

#include <string>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

/// The options of a command that takes any number of paths from scripts.
inline constexpr Option hexOption{.name = "--hex",
                                  .help = "The paths are hexadecimal digits, two for each byte."};
inline constexpr Option from0Option{.name = "--from0",
                                    .value = Option::Value::text,
                                    .valueName = "-",
                                    .help = "Read the paths from standard input, each ended by a zero byte."};

/// The paths that such a command was given, as bytes: its operands, or the list on standard input. A list
/// must be complete: one that was cut off could end with the path of an ancestor. If anything is wrong with
/// the paths, reports that on standard error and returns the exit status.
[[nodiscard]] std::variant<std::vector<std::string>, ExitStatus> givenPaths(const Arguments &arguments,
                                                                            const Command &command);

} // namespace brimvale::commandLine
