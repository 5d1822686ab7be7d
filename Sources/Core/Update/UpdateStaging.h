#pragma once

#include "Base/FileURL.h"
#include "Core/Update/UpdateState.h"
#include "Platform/Tools.h"

#include <optional>
#include <string>

namespace brimvale {

/// Unpacks the archive of an update into a folder of its own inside `temporaryFolder` ("update-…"), which
/// only this user can enter, and answers the application in it, a folder whose name ends in ".app", once
/// everything about it is verified: the archive's digest where `sha256` is given, the signature, and that the
/// program's own makers signed it. Tools do the work, and one that ends with another status than 0 has
/// failed. Blocks until they have ended: call it off the main thread. What a failed attempt unpacked stays
/// where it is.
[[nodiscard]] UpdateResult<FileURL> stageUpdate(const FileURL &archive,
                                                const std::optional<std::string> &sha256,
                                                const FileURL &temporaryFolder, const Tools &tools);

} // namespace brimvale
