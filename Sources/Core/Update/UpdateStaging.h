#pragma once

#include "Base/FileURL.h"
#include "Core/Update/UpdateState.h"
#include "Platform/Tools.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// What an update must be before it is installed.
struct ExpectedRelease {
    std::optional<std::string> sha256;     ///< of the archive; nothing if the feed does not say it
    std::optional<std::string> identifier; ///< of the bundle: that of the running application
    std::int64_t build = 0;                ///< the announced one
};

/// The names of folders for unpacking begin with it.
inline constexpr std::string_view unpackFolderPrefix = "update-";

/// Unpacks the archive of an update into a private folder of its own inside `temporaryFolder` ("update-…"),
/// and returns the application in it, a folder whose name ends in ".app". Verifies the archive's digest, the
/// signature, that the program's own makers signed it, and that it is the announced build of this program.
/// External tools do the work; a tool with another exit status than 0 has failed. Blocks, and needs a stack
/// of 8 MB, so call it on a worker thread. A failed attempt leaves the unpacked files.
[[nodiscard]] UpdateResult<FileURL> stageUpdate(const FileURL &archive, const ExpectedRelease &expected,
                                                const FileURL &temporaryFolder, const Tools &tools);

} // namespace brimvale
