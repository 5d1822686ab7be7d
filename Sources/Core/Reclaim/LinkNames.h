#pragma once

#include "Base/StopFlag.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Scan/WalkPool.h"

#include <vector>

namespace brimvale {

class FSNode;

/// The folders of a scanned tree in which files with several names were found, without those that the tree no
/// longer has; at most some thousands.
[[nodiscard]] LinkPlaces foldersWithLinks(const FSNode &root);

/// Gives each file a name that it has in these places and outside `items`, where one is found before
/// `cancelled` is set.
void findNames(std::vector<Reclaim::Link> &files, const LinkPlaces &places, const GonePaths &items,
               const StopFlag &cancelled, WalkPool &pool);

} // namespace brimvale
