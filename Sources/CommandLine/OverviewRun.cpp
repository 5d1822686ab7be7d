#include "CommandLine/OverviewRun.h"

#include "CommandLine/ProgressLine.h"
#include "Core/Scan/SubtreeSizes.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/StorageFigures.h"

#include <chrono>
#include <tuple>
#include <utility>

namespace brimvale::commandLine {

OverviewFigures measureOverview(const StopFlag &cancelled, const std::vector<CleanupTarget> &targets) {
    std::vector<StorageCategory> definitions = StorageCategories::all();
    std::erase_if(definitions, [](const StorageCategory &one) { return !one.hasPlace(); });
    OverviewFigures figures{VolumeInfo::current(std::chrono::seconds(2)),
                            StorageFigures::unmeasured(definitions)};
    figures.targets = targets;
    std::vector<MeasuredCategory> &categories = figures.categories;
    StorageCategories::SystemDataRows systemData;
    const std::optional<VolumeInfo> root = VolumeInfo::root(figures.volumes);
    {
        StepProgress progress(definitions.size() + targets.size());
        const auto takeCategory = [&](const MeasuredCategory &measured) {
            for (MeasuredCategory &one : categories)
                if (one.category.id == measured.category.id)
                    one = measured;
            progress.step();
        };
        const auto takeTarget = [&](const CleanupTarget &measured) {
            for (CleanupTarget &one : figures.targets)
                if (one.id == measured.id)
                    one = measured;
            progress.step();
        };
        const Host host = Host::current();
        SubtreeSizes::measureTogether(
            {StorageCategories::request(definitions, takeCategory, systemData, host,
                                        root ? std::optional(root->url) : std::nullopt),
             CleanupCatalog::request(targets, takeTarget, host)},
            ScanOptions::standard(host), cancelled);
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
