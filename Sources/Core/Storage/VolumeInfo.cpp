#include "Core/Storage/VolumeInfo.h"

#include "Catalogs/Catalog.h"
#include "Core/Text/Formatting.h"
#include "Platform/Confinement.h"

#include <algorithm>
#include <memory>
#include <tuple>

namespace brimvale {

std::vector<VolumeInfo> VolumeInfo::current(std::chrono::milliseconds patience) {
    const Host host = Host::current();
    const auto nameOfDistribution = catalogOf(host.system).nameOfDistribution;
    const std::shared_ptr<const Confinement> confined = confinement();
    std::vector<MountedVolume> mounted = confined ? confined->volumes() : mountedVolumes(patience);
    if (nameOfDistribution != nullptr)
        return from(mounted, nameOfDistribution(host));
    for (MountedVolume &one : mounted) // a Mac does not tell them
        one.fileSystem = one.device = std::nullopt;
    return from(mounted);
}

std::vector<VolumeInfo> VolumeInfo::from(const std::vector<MountedVolume> &mounted,
                                         const std::optional<std::string> &rootName) {
    std::vector<VolumeInfo> volumes;
    for (const MountedVolume &one : mounted) {
        if (!one.isBrowsable.value_or(true) || one.totalCapacity.value_or(0) < 1)
            continue;
        volumes.push_back({.url = one.url,
                           .name = one.name.value_or(std::string(one.url.fileName())),
                           .totalCapacity = *one.totalCapacity,
                           .availableForImportantUsage = one.availableForImportantUsage.value_or(0),
                           .trueFree = one.available.value_or(0),
                           .isInternal = one.isInternal.value_or(false),
                           .isRootVolume = one.isRootFileSystem.value_or(false),
                           .reserved = one.reserved.value_or(0),
                           .fileSystem = one.fileSystem,
                           .device = one.device});
        if (volumes.back().isRootVolume && rootName)
            volumes.back().name = *rootName;
    }
    std::stable_sort(volumes.begin(), volumes.end(), [](const VolumeInfo &a, const VolumeInfo &b) {
        return std::tuple(!a.isRootVolume, std::string_view(a.name)) <
               std::tuple(!b.isRootVolume, std::string_view(b.name));
    });
    return volumes;
}

std::optional<VolumeInfo> VolumeInfo::root(const std::vector<VolumeInfo> &volumes) {
    const auto root = std::find_if(volumes.begin(), volumes.end(),
                                   [](const VolumeInfo &volume) { return volume.isRootVolume; });
    if (root != volumes.end())
        return *root;
    return volumes.empty() ? std::nullopt : std::optional(volumes.front());
}

std::optional<std::string> volumeDetails(const VolumeInfo &volume) {
    if (!volume.fileSystem || !volume.device)
        return std::nullopt;
    return *volume.fileSystem + " · " + *volume.device + " · " + volume.url.path();
}

std::optional<std::string> purgeableSentence(const VolumeInfo &volume) {
    if (volume.purgeable() < 1)
        return std::nullopt;
    return Fmt::byteFormatter(volume.purgeable()) + " " + Words::current().purgeableSpace;
}

std::optional<std::string> reservedSentence(const VolumeInfo &volume) {
    if (volume.reserved < 1)
        return std::nullopt;
    return Fmt::byteFormatter(volume.used()) + " used, " + Fmt::byteFormatter(volume.shownAvailable()) +
           " free, " + Fmt::byteFormatter(volume.reserved) +
           " reserved. The file system keeps the reserved space for itself and the administrator.";
}

} // namespace brimvale
