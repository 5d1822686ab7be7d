#pragma once

#include "Base/Date.h"
#include "Platform/Tools.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A local snapshot of a volume.
struct LocalSnapshot {
    std::string name;
    std::optional<Date> date; ///< nothing where the name has none

    /// The local snapshots of the volume mounted at `volume`, newest first, those without a date last. Empty
    /// on any failure, and where there is no such tool. Blocks while the tool runs.
    [[nodiscard]] static std::vector<LocalSnapshot> list(const std::string &volume,
                                                         const Tools &tools = platformTools());

    friend bool operator==(const LocalSnapshot &, const LocalSnapshot &) = default;
};

/// The note for this number of snapshots; nothing for 0.
[[nodiscard]] std::optional<std::string> snapshotNote(std::size_t count);

} // namespace brimvale
