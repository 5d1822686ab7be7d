#include "Platform/Mounts.h"

#include <cstdlib>
#include <string_view>
#include <sys/mount.h>

namespace brimvale {

std::vector<std::string> pseudoMountPoints() {
    std::vector<std::string> points;
    struct statfs *table = nullptr;
    const int count = getmntinfo_r_np(&table, MNT_NOWAIT);
    for (int i = 0; i < count; ++i) {
        const std::string_view type = table[i].f_fstypename;
        if (type == "devfs" || type == "autofs")
            points.emplace_back(table[i].f_mntonname);
    }
    if (count > 0)
        std::free(table);
    return points;
}

} // namespace brimvale
