#pragma once

#include "Core/Storage/LocalSnapshot.h"
#include "Core/Storage/VolumeInfo.h"
#include "Platform/DeletedFiles.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// What a part of System Data consists of that is in no row of it.
struct HiddenSpace {
    DeletedFiles deletedFiles;

    friend bool operator==(const HiddenSpace &, const HiddenSpace &) = default;

    /// Looks for it on the volume at this mount point. Nothing with the macOS catalog, where other sentences
    /// explain this space.
    [[nodiscard]] static HiddenSpace on(const FileURL &volume);
};

/// Whether the catalog in force explains hidden space with these sentences.
[[nodiscard]] bool explainsHiddenSpace();

/// Sentences about hidden space, the snapshots and the reserved space of `root`, and the places of which only
/// an administrator may read a part. None where the catalog does not explain hidden space.
[[nodiscard]] std::vector<std::string> hiddenSpaceSentences(const HiddenSpace &hidden,
                                                            const std::optional<VolumeInfo> &root,
                                                            const std::vector<LocalSnapshot> &snapshots,
                                                            std::size_t incompletePlaces);

} // namespace brimvale
