#pragma once

#include <string>

namespace brimvale {

/// Writes a line to the system's log, for whoever looks into it later: the unified log on macOS, syslog (and
/// so the journal) on Linux. Never fails, never waits for a reader. Thread-safe.
void writeToSystemLog(const std::string &line);

} // namespace brimvale
