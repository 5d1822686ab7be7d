#pragma once

#include "Base/FileURL.h"
#include "Platform/Host.h"
#include "Platform/Volumes.h"

#include <vector>

namespace brimvale::sample {

/// The volumes of a sample: its disk, whose free space grows when something in it is removed, and another one
/// for backups. Measures the disk, which takes some milliseconds. Thread-safe.
[[nodiscard]] std::vector<MountedVolume> sampleVolumes(System system, const FileURL &disk);

} // namespace brimvale::sample
