#pragma once

#include "Base/StopFlag.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Scan/WalkPool.h"
#include "Platform/FileStatus.h"

#include <unordered_set>
#include <vector>

namespace brimvale {

class FSNode;

/// The folders of a scanned tree in which files with several names were found, without those that the tree no
/// longer has; at most some thousands.
[[nodiscard]] LinkPlaces foldersWithLinks(const FSNode &root);

/// Selected items, and the folders among them and inside them, at whatever path they are reached.
struct SelectedNames {
    GonePaths items;
    const std::unordered_set<FileIdentity> &folders;
};

/// Gives each file a name that it has in these places and outside the selection, where one is found before
/// `cancelled` is set.
void findNames(std::vector<Reclaim::Link> &files, const LinkPlaces &places, const SelectedNames &selected,
               const StopFlag &cancelled, WalkPool &pool);

} // namespace brimvale
