#pragma once

#include "Sample/DiskBuilder.h"

namespace brimvale::sample {

inline constexpr const char *linuxHome = "/home/sam";

/// The files of the sample that only take space.
[[nodiscard]] SpaceFiles linuxFiles();

/// Makes the applications of each kind, with what they leave in the home.
void makeLinuxApps(DiskBuilder &disk);

/// Makes the programs of package managers and of Snapper, as scripts that work on this disk alone.
void makeLinuxTools(DiskBuilder &disk);

/// Makes the whole disk of a computer with Linux. The folders are dated too.
void makeLinuxDisk(DiskBuilder &disk);

} // namespace brimvale::sample
