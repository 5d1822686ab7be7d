#pragma once

#include "Base/FileError.h"

@class NSError;

namespace brimvale {

/// The system's error with its description and its underlying errors. Domains other than POSIX count as
/// Cocoa: the codes of the others are negative, so none is mistaken for one of Cocoa's. Nil, when the system
/// failed without a reason, counts as "unknown error" on writing.
[[nodiscard]] FileError fileErrorOf(NSError *error);

} // namespace brimvale
