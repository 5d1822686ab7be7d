#pragma once

#include "Base/Date.h"
#include "Base/StopFlag.h"
#include "Platform/EntryRecord.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// One entry of a backup: a file with its digest, a symbolic link with its target, a folder or a special
/// file.
struct BackedUpEntry {
    std::string path; ///< relative to the backup's folder, as bytes
    EntryKind kind = EntryKind::file;
    std::optional<std::uint32_t> permissions = {}; ///< the lowest twelve bits of the mode; none for a link
    std::int64_t size = 0;                         ///< for a file
    std::string sha256 = {};                       ///< for a file, 64 hexadecimal digits
    Date modified = {};                            ///< for a file
    std::string linkTarget = {};                   ///< for a link

    friend bool operator==(const BackedUpEntry &, const BackedUpEntry &) = default;
};

/// Reads the entry at `path` (absolute); it is listed as `relativePath`. Nothing where it cannot be read to
/// its end, or `cancelled` is set. `alsoRead` is shown every piece of a file in order.
[[nodiscard]] std::optional<BackedUpEntry> readBackedUpEntry(
    const std::string &path, const std::string &relativePath, const StopFlag &cancelled,
    const std::function<void(std::string_view piece)> &alsoRead = [](std::string_view) {});

} // namespace brimvale
