#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brimvale {

/// Deleted files that keep their space because running programs still have them open.
struct DeletedFiles {
    struct Holder {
        std::string program; ///< its name
        std::int64_t bytes;  ///< allocated; a file that several programs have open is counted for one of them
        friend bool operator==(const Holder &, const Holder &) = default;
    };
    std::vector<Holder> holders;      ///< the largest first
    std::int64_t unknownPrograms = 0; ///< programs of other users, into which this one may not look

    friend bool operator==(const DeletedFiles &, const DeletedFiles &) = default;
};

/// Those on the storage of the volume at this mount point. Never fails. Reads the table of processes, so it
/// takes some milliseconds. Empty on macOS.
[[nodiscard]] DeletedFiles deletedFilesOn(const std::string &volume);

} // namespace brimvale
