#include "Platform/Snapshots.h"

namespace brimvale {

std::vector<VolumeSnapshot> volumeSnapshots(const std::string & /*folder*/, const Tools & /*tools*/) {
    return {};
}

} // namespace brimvale
