#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

namespace brimvale {

/// Whether the signature of an application or program is valid, and everything in it is as it was signed.
/// Runs a tool, for an application for up to a few seconds.
[[nodiscard]] bool isValidlySigned(const FileURL &program, const Tools &tools);

/// The same, and whether our own team signed it (see `teamRequirement`).
[[nodiscard]] bool isSignedByOurTeam(const FileURL &program, const Tools &tools);

} // namespace brimvale
