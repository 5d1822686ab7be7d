#pragma once

#include "Base/FileURL.h"
#include "Platform/FileStatus.h"
#include "Platform/Tools.h"
#include "Platform/Volumes.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A folder that the program takes for the whole disk, and outside which it removes nothing.
struct Confinement {
    FileURL folder; ///< stands for "/"; its path has no links
    Tools tools;    ///< in place of those of the platform
    /// The volumes in place of the mounted ones. Called on any thread.
    std::function<std::vector<MountedVolume>()> volumes;
};

/// Confines this program, or frees it again. Call it before anything reads the disk. False, and nothing has
/// changed, where the folder cannot be opened.
[[nodiscard]] bool confine(std::optional<Confinement> confinement);

/// The confinement of this program; null where there is none. Thread-safe.
[[nodiscard]] std::shared_ptr<const Confinement> confinement();

/// Whether an item with these ancestors is inside the folder of the confinement, whatever paths say. True
/// where there is none.
[[nodiscard]] bool isWithinConfinement(const std::vector<FileIdentity> &ancestors);

/// A path as it would be if the folder of the confinement were "/"; nothing for a path outside, and where
/// there is no confinement.
[[nodiscard]] std::optional<std::string> pathInConfinement(const std::string &path);

} // namespace brimvale
