#pragma once

#include "Platform/Snapshots.h"
#include "Platform/Tools.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// A snapshot of Snapper, with its place in the file system.
struct SnapperSnapshot {
    VolumeSnapshot snapshot;
    std::string path;
};

/// The snapshots of every configuration whose subvolume `isWanted` accepts, as far as Snapper lets the user
/// list them: without the running system and what it would start from next. Empty where it is not installed.
[[nodiscard]] std::vector<SnapperSnapshot>
snapperSnapshots(const Tools &tools, const std::function<bool(const std::string &subvolume)> &isWanted);

/// The rows of a table in comma-separated values (RFC 4180), its titles first.
[[nodiscard]] std::vector<std::vector<std::string>> rowsOfTable(std::string_view text);

} // namespace brimvale
