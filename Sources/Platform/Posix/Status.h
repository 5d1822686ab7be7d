#pragma once

#include "Platform/EntryRecord.h"
#include "Platform/FileStatus.h"

struct stat;

namespace brimvale {

/// Converts the system's status record.
[[nodiscard]] FileStatus statusOf(const struct stat &record);

/// The same as a record of the entry.
[[nodiscard]] EntryRecord recordOf(const struct stat &record);

/// Whether the entry is a placeholder: its contents are with a cloud provider and not on this disk.
[[nodiscard]] bool isDataless(const struct stat &record);

} // namespace brimvale
