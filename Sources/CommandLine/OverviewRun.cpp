#include "CommandLine/OverviewRun.h"

#include "CommandLine/ProgressLine.h"
#include "Core/Storage/StorageFigures.h"

#include <chrono>
#include <utility>

namespace brimvale::commandLine {

OverviewFigures measureOverview(const StopFlag &cancelled) {
    std::vector<StorageCategory> definitions = StorageCategories::all();
    std::erase_if(definitions, [](const StorageCategory &one) { return !one.hasPlace(); });
    OverviewFigures figures{VolumeInfo::current(std::chrono::seconds(2)),
                            StorageFigures::unmeasured(definitions)};
    std::vector<MeasuredCategory> &categories = figures.categories;
    std::vector<CleanupEntry> systemData;
    const std::optional<VolumeInfo> root = VolumeInfo::root(figures.volumes);
    {
        StepProgress progress(definitions.size());
        systemData = StorageCategories::measureAll(
            definitions,
            [&](const MeasuredCategory &measured) {
                for (MeasuredCategory &one : categories)
                    if (one.category.id == measured.category.id)
                        one = measured;
                progress.step();
            },
            cancelled, Host::current(), WalkPool::shared(), root ? std::optional(root->url) : std::nullopt);
    }
    for (MeasuredCategory &one : categories)
        if (one.category.measurement == CategoryMeasurement::remainder)
            one.entries = systemData;
    categories = StorageFigures::resolvingRemainder(std::move(categories), root);
    return figures;
}

} // namespace brimvale::commandLine
