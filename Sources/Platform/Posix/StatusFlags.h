#pragma once

struct stat;

namespace brimvale {

/// Whether the entry is a placeholder whose contents are kept by a cloud provider and not on this disk.
[[nodiscard]] bool isDataless(const struct stat &status);

} // namespace brimvale
