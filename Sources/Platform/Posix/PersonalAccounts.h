#pragma once

#include <sys/types.h>

namespace brimvale {

/// The first user id that the system gives to a person; service accounts have lower ones.
[[nodiscard]] uid_t firstPersonalAccount();

} // namespace brimvale
