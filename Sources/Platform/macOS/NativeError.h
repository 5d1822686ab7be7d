#pragma once

#include "Base/FileError.h"

@class NSError;

namespace brimvale {

/// The system's error with its description and the errors beneath it. A domain that is neither POSIX nor
/// Cocoa counts as Cocoa's: the codes of the others are negative, so they are never taken for one of its own.
/// Nil, where the system failed without a reason, counts as "unknown error" on writing.
[[nodiscard]] FileError fileErrorOf(NSError *error);

} // namespace brimvale
