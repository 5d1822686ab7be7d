#pragma once

#include <string>

namespace brimvale {

/// Writes a line to the system's log: the unified log on macOS, syslog (and so the journal) on Linux. Never
/// fails or blocks. Thread-safe.
void writeToSystemLog(const std::string &line);

} // namespace brimvale
