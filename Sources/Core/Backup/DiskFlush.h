#pragma once

#include "Base/StopFlag.h"

#include <functional>
#include <string>

namespace brimvale {

/// Waits until the copy at an absolute path, with everything below it, is on the disk. Returns early once
/// `cancelled` is set; the system may then continue to write in the background.
void flushToDisk(const std::string &copy, const StopFlag &cancelled);

} // namespace brimvale
