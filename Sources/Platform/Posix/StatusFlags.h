#pragma once

struct stat;

namespace brimvale {

/// Whether the entry is a placeholder: its contents are with a cloud provider and not on this disk.
[[nodiscard]] bool isDataless(const struct stat &status);

} // namespace brimvale
