#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// Checks before a backup starts.
namespace BackupPlan {

/// Whether two names may mean the same file: on many disks they do when they differ only in the case of ASCII
/// letters.
[[nodiscard]] bool isSameName(std::string_view a, std::string_view b);

/// Whether the folder `place` is the item itself or inside it, by their paths or through links; also for an
/// item without a name of its own, such as "/".
[[nodiscard]] bool holds(const FileURL &item, const FileURL &place);

/// Why these items cannot be copied into one backup inside `root`, as a sentence: two of them have the same
/// name, or one would be copied into itself. Nothing where they can.
[[nodiscard]] std::optional<std::string> refusal(const std::vector<FileURL> &items, const FileURL &root);

/// Too little room for a backup, in bytes.
struct Shortage {
    std::int64_t needed = 0;
    std::int64_t available = 0;

    friend bool operator==(const Shortage &, const Shortage &) = default;
};

/// The missing room where `root` is or would be, for items of `neededBytes`. Nothing where there is enough
/// room, where copies share blocks with their originals, or where it is unknown.
[[nodiscard]] std::optional<Shortage> shortage(const std::vector<FileURL> &items, std::int64_t neededBytes,
                                               const FileURL &root);

/// The warning, with both figures.
[[nodiscard]] std::string sentence(const Shortage &shortage);

} // namespace BackupPlan

} // namespace brimvale
