#pragma once

#include "Base/FileURL.h"
#include "Core/Update/UpdateState.h"
#include "Platform/Tools.h"

#include <optional>
#include <string>

namespace brimvale {

/// Unpacks the archive of an update into a private folder of its own inside `temporaryFolder` ("update-…"),
/// and returns the application in it, a folder whose name ends in ".app". Before, verifies the archive's
/// digest if `sha256` is given, the signature, and that the program's own makers signed it. External tools do
/// the work; a tool with another exit status than 0 has failed. Blocks, so call it off the main thread. A
/// failed attempt leaves the unpacked files.
[[nodiscard]] UpdateResult<FileURL> stageUpdate(const FileURL &archive,
                                                const std::optional<std::string> &sha256,
                                                const FileURL &temporaryFolder, const Tools &tools);

} // namespace brimvale
