#pragma once

#include "Catalogs/StorageCategory.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/VolumeInfo.h"

#include <chrono>
#include <functional>
#include <vector>

namespace brimvale {

/// What the model asks about this machine; a test can give its own answers.
struct ModelSources {
    /// The mounted volumes; waits at most that long. Called on any thread.
    std::function<std::vector<VolumeInfo>(std::chrono::milliseconds)> volumes = VolumeInfo::current;
    /// The categories to measure. Called on the main thread.
    std::function<std::vector<StorageCategory>()> categories = [] { return StorageCategories::all(); };
};

} // namespace brimvale
