#include "Core/Storage/Permissions.h"

#include "Catalogs/Catalog.h"
#include "Platform/FileAccess.h"

#include <algorithm>
#include <optional>

namespace brimvale::Permissions {

bool hasFullDiskAccess(const Host &host) {
    const std::optional<AccessProbes> probes = catalogOf(host.system).accessProbes(host);
    return !probes || hasFullDiskAccess(*probes);
}

bool hasFullDiskAccess(const AccessProbes &probes) {
    return std::any_of(probes.files.begin(), probes.files.end(),
                       [](const FileURL &file) {
                           return isReportedReadable(file.path()) && opensForReading(file.path());
                       }) ||
           canListContents(probes.folder.path());
}

} // namespace brimvale::Permissions
