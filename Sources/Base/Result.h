#pragma once

#include "Base/FileError.h"

#include <variant>

namespace brimvale {

/// The result of an operation that may fail: its value, or the reason for the failure.
template<class Value, class Failure = FileError>
using Result = std::variant<Value, Failure>;

} // namespace brimvale
