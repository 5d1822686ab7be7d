#pragma once

#include "Base/FileError.h"

#include <variant>

namespace brimvale {

/// What an operation answers that may fail: its value, or why there is none.
template<class Value, class Failure = FileError>
using Result = std::variant<Value, Failure>;

} // namespace brimvale
