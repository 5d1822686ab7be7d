#pragma once

#include "Base/StopFlag.h"
#include "Platform/FileStatus.h"

#include <optional>
#include <string>

namespace brimvale {

/// A regular file at an absolute path.
struct KnownFile {
    std::string path;
    FileIdentity identity;
};

/// Whether both files are still these and have the same bytes now. Reads them up to the first difference, and
/// nothing that is stored at a cloud provider. Nothing where one is another file, can't be read or changes
/// while it is read, or once `stopped` is set.
[[nodiscard]] std::optional<bool> haveSameContents(const KnownFile &one, const KnownFile &other,
                                                   const StopFlag &stopped);

} // namespace brimvale
