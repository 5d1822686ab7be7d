#pragma once

#include "Base/Date.h"
#include "Base/StopFlag.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// One entry of a backup: a file with its digest, or a symbolic link.
struct BackedUpFile {
    std::string path; ///< relative to the backup's folder, as bytes
    std::int64_t size = 0;
    std::string sha256 = {}; ///< 64 hexadecimal digits
    Date modified = {};
    std::optional<std::string> linkTarget = {}; ///< for a link, which has none of the other figures

    friend bool operator==(const BackedUpFile &, const BackedUpFile &) = default;
};

/// Reads the file or link at `path` (absolute), and lists it as `relativePath`. Nothing if it cannot be read
/// to its end, or if `cancelled` is set before. Passes every piece to `alsoRead`, in order.
[[nodiscard]] std::optional<BackedUpFile> readBackedUpFile(
    const std::string &path, const std::string &relativePath, const StopFlag &cancelled,
    const std::function<void(std::string_view piece)> &alsoRead = [](std::string_view) {});

/// The result of comparing an original with its copy.
struct CopyComparison {
    std::vector<BackedUpFile> copies;   ///< the readable copies, as listed in the backup
    std::vector<std::string> differing; ///< originals whose copies are missing, unreadable or different
};

/// Compares every file and link of the original at `source` with its copy at `destination` (absolute paths),
/// byte for byte, and from the disk if the system allows that. `relativePath` is the path of the copy in the
/// backup. Additional files of the copy are not differences. Works on several threads. Once `cancelled` is
/// set, the result is meaningless.
[[nodiscard]] CopyComparison compareCopy(const std::string &source, const std::string &destination,
                                         const std::string &relativePath, const StopFlag &cancelled);

} // namespace brimvale
