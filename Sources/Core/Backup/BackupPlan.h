#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// What is to be found out before a backup begins.
namespace BackupPlan {

/// Whether two names may mean the same file: they do on many disks where only the case of ASCII letters tells
/// them apart.
[[nodiscard]] bool isSameName(std::string_view a, std::string_view b);

/// Whether the folder `place` is the item itself or lies inside it, as their paths say or by links on the way
/// there; also for an item without a name of its own, such as "/".
[[nodiscard]] bool holds(const FileURL &item, const FileURL &place);

/// Why these items cannot be copied into one backup inside `root`, as a sentence: two of the same name would
/// become one, and none can be copied into itself. Nothing where they can.
[[nodiscard]] std::optional<std::string> refusal(const std::vector<FileURL> &items, const FileURL &root);

/// Too little room for a backup, in bytes.
struct Shortage {
    std::int64_t needed = 0;
    std::int64_t available = 0;

    friend bool operator==(const Shortage &, const Shortage &) = default;
};

/// Whether the items, which take up `neededBytes`, are more than fits where `root` is or would be; nothing
/// also where their copies share their blocks, and where it cannot be told.
[[nodiscard]] std::optional<Shortage> shortage(const std::vector<FileURL> &items, std::int64_t neededBytes,
                                               const FileURL &root);

/// The warning, with both figures.
[[nodiscard]] std::string sentence(const Shortage &shortage);

} // namespace BackupPlan

} // namespace brimvale
