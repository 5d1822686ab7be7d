#pragma once

#include "Base/Result.h"
#include "Base/StopFlag.h"
#include "Platform/SteadyFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Where a file system that can store the same bytes for several files has the bytes of one file.
struct StoredBytes {
    /// Consecutive bytes.
    struct Run {
        std::uint64_t offset = 0; ///< in the file
        std::uint64_t place = 0;  ///< on the storage
        std::uint64_t length = 0;
    };

    std::string storage;    ///< tells file systems apart
    std::vector<Run> runs;  ///< in the order of the file
    bool areShared = false; ///< other files or snapshots use some of them, too

    /// The whole place, as bytes to compare: equal for files that are stored in the same place.
    [[nodiscard]] std::string place() const {
        return storage + std::string(reinterpret_cast<const char *>(runs.data()), runs.size() * sizeof(Run));
    }
};

/// Where the bytes of an open file are. Nothing where the file system cannot share them, or does not tell the
/// place of every byte.
[[nodiscard]] std::optional<StoredBytes> storedBytes(const SteadyFile &file);

/// Whether files on the file system of an open file may share their bytes, so that `shareBytes` is worth a
/// try.
[[nodiscard]] bool mayShareBytes(const SteadyFile &file);

/// Why two files do not share their bytes.
struct SharingFailure {
    std::optional<int> error = {}; ///< an errno; nothing where the files are not equal
};

/// Lets `copy` use the stored bytes of `original`. The file system compares both itself, and changes nothing
/// where they differ; contents and dates of both stay as they are. The bytes that are shared now: fewer than
/// the length once `stopped` is set. EOPNOTSUPP where the file system cannot do this, EXDEV where they are on
/// different ones.
[[nodiscard]] Result<std::int64_t, SharingFailure>
shareBytes(const SteadyFile &original, const SteadyFile &copy, const StopFlag &stopped);

} // namespace brimvale
