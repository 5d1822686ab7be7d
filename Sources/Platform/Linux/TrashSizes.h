#pragma once

#include "Platform/Posix/Descriptor.h"

#include <string>

namespace brimvale {

/// Takes the size of a folder that has left a Trash out of the list that file managers keep there. On failure
/// the list stays as it is; they compare it with the records.
void forgetSize(const Descriptor &trash, const std::string &name);

} // namespace brimvale
