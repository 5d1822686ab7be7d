#include "Platform/TrashContents.h"

namespace brimvale {

std::vector<VolumeTrash> volumeTrashes(const Host & /*host*/) {
    return {};
}

TrashRecord trashRecord(const FileURL & /*item*/) {
    return {};
}

std::vector<FileURL> lostItems(const Host & /*host*/) {
    return {};
}

void forgetTrashed(const FileURL & /*item*/) {}

} // namespace brimvale
