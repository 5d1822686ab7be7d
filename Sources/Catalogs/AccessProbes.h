#pragma once

#include "Platform/Host.h"

#include <optional>
#include <vector>

namespace brimvale {

/// Places that only a program with Full Disk Access can read.
struct AccessProbes {
    std::vector<FileURL> files; ///< one that opens for reading proves the access
    FileURL folder;             ///< and so does this one when its contents can be listed
};

/// The places of the host's system; nothing where no such permission exists, so that none can be missing.
[[nodiscard]] std::optional<AccessProbes> accessProbes(const Host &host);

/// The places of one system.
namespace macOSCatalog {
AccessProbes accessProbes(const FileURL &home);
} // namespace macOSCatalog

} // namespace brimvale
