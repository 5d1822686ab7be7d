#pragma once

#include <sys/types.h>

namespace brimvale {

/// The first user id that the system gives to a person; service accounts have lower ones.
[[nodiscard]] uid_t firstPersonalAccount();

/// Whether every member of the group is an administrator.
[[nodiscard]] bool isAdministratorGroup(gid_t group);

} // namespace brimvale
