#include "CommandLine/OverviewRun.h"

#include "CommandLine/ProgressLine.h"
#include "Core/Storage/StorageFigures.h"

#include <chrono>
#include <tuple>
#include <utility>

namespace brimvale::commandLine {

OverviewFigures measureOverview(const StopFlag &cancelled) {
    std::vector<StorageCategory> definitions = StorageCategories::all();
    std::erase_if(definitions, [](const StorageCategory &one) { return !one.hasPlace(); });
    OverviewFigures figures{VolumeInfo::current(std::chrono::seconds(2)),
                            StorageFigures::unmeasured(definitions)};
    std::vector<MeasuredCategory> &categories = figures.categories;
    StorageCategories::SystemDataRows systemData;
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
            std::tie(one.entries, one.incomplete) = std::tie(systemData.entries, systemData.incomplete);
    categories = StorageFigures::resolvingRemainder(std::move(categories), root);
    if (root && explainsHiddenSpace()) {
        figures.hidden = HiddenSpace::on(root->url);
        figures.snapshots = LocalSnapshot::list(root->url.path());
    }
    return figures;
}

std::vector<std::string> explanationsOf(const OverviewFigures &figures) {
    return hiddenSpaceSentences(figures.hidden, VolumeInfo::root(figures.volumes), figures.snapshots,
                                StorageFigures::incompletePlaces(figures.categories).size());
}

} // namespace brimvale::commandLine
