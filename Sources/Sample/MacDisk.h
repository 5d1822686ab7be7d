#pragma once

#include "Sample/DiskBuilder.h"

namespace brimvale::sample {

inline constexpr const char *macHome = "/Users/sam";

/// The files of the sample that only take space.
[[nodiscard]] SpaceFiles macFiles();

/// Makes the applications with what they leave in the home.
void makeMacApps(DiskBuilder &disk);

/// Makes Time Machine's tool, as a script that works on this disk alone.
void makeMacTools(DiskBuilder &disk);

/// Makes the database of messages, with real rows, by the system's sqlite3. Where that is missing, a
/// file that says so.
void makeMacMessages(DiskBuilder &disk);

/// Makes the whole disk of a Mac. The folders are dated too.
void makeMacDisk(DiskBuilder &disk);

} // namespace brimvale::sample
