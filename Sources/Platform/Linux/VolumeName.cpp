#include "Platform/Linux/VolumeName.h"

#include "Platform/Linux/BlockDevice.h"

namespace brimvale {

std::optional<std::string> volumeName(const Mount &mount, const std::string &root) {
    if (std::string pool = poolOf(mount); !pool.empty())
        return pool;
    if (std::optional<std::string> label = labelOf(mount, root))
        return label;
    const std::optional<std::string> folder = deviceFolderOf(mount, root);
    return folder ? deviceName(*folder) : std::nullopt;
}

} // namespace brimvale
