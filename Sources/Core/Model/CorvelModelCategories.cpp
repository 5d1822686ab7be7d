#include "Core/Model/CorvelModel.h"
#include "Core/Removal/EnclosingFolders.h"
#include "Core/Scan/Counter.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/StorageFigures.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace brimvale {

namespace {

/// Takes the rows of what is gone out of a category, what lay in a folder that is gone included.
void withdraw(const std::unordered_set<FileURL> &gone, MeasuredCategory &category) {
    EnclosingFolders folders(gone);
    const auto removed = std::erase_if(category.entries, [&](const CleanupEntry &entry) {
        return gone.contains(entry.url) || folders.enclose(entry.url);
    });
    if (removed > 0 && category.category.measurement == CategoryMeasurement::measured)
        category.size = CleanupEntries::totalSize(category.entries);
}

} // namespace

const MeasuredCategory *CorvelModel::category(std::string_view id) const {
    const auto found = std::find_if(categories->begin(), categories->end(),
                                    [id](const MeasuredCategory &one) { return one.category.id == id; });
    return found == categories->end() ? nullptr : &*found;
}

std::int64_t CorvelModel::categorisedBytes() const {
    return StorageFigures::categorisedBytes(*categories);
}

std::int64_t CorvelModel::systemDataAccounted() const {
    return StorageFigures::systemDataAccounted(*categories);
}

void CorvelModel::resolveRemainder() {
    categories.set(StorageFigures::resolvingRemainder(*categories, rootVolume()));
}

void CorvelModel::measureCategories() {
    if (*isMeasuringCategories)
        return;
    if (!*isMeasuringCleanup)
        goneMeanwhile_.clear();
    isMeasuringCategories.set(true);
    categoryProgress.set(0);
    const std::vector<StorageCategory> all = StorageCategories::all();
    categories.set(StorageFigures::unmeasured(all));
    inBackground(
        [this, all, cancelled = isClosing_] {
            const auto completed = std::make_shared<Counter>();
            const auto total = static_cast<double>(
                std::count_if(all.begin(), all.end(), [](const StorageCategory &category) {
                    return category.measurement == CategoryMeasurement::measured;
                }));
            const auto finished = [&](MeasuredCategory measured) {
                publish([this, measured = std::move(measured), completed, total] {
                    show(measured);
                    categoryProgress.set(static_cast<double>(completed->add(1)) / total);
                });
            };
            return StorageCategories::measureAll(all, finished, cancelled);
        },
        [this](const std::vector<CleanupEntry> &rows) {
            categories.update([&](std::vector<MeasuredCategory> &measured) {
                for (MeasuredCategory &one : measured)
                    if (one.category.measurement == CategoryMeasurement::remainder) {
                        one.entries = rows;
                        withdraw(goneMeanwhile_, one);
                    }
            });
            resolveRemainder();
            lastCategoryScan.set(now());
            categoryProgress.set(1);
            isMeasuringCategories.set(false);
        });
}

/// Puts a category that has been measured in its place, without what was removed before it got here.
void CorvelModel::show(MeasuredCategory measured) {
    withdraw(goneMeanwhile_, measured);
    categories.update([&](std::vector<MeasuredCategory> &all) {
        for (MeasuredCategory &one : all)
            if (one.category.id == measured.category.id)
                one = measured;
    });
    resolveRemainder();
}

void CorvelModel::removeCategoryEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode) {
    beginRemoval(entries, mode, [this](const RemovalResult &result) {
        const std::unordered_set<FileURL> gone(result.succeeded.begin(), result.succeeded.end());
        std::vector<MeasuredCategory> left = *categories;
        for (MeasuredCategory &one : left)
            withdraw(gone, one);
        categories.set(std::move(left));
        resolveRemainder();
        refreshVolumes();
        endRemoval();
    });
}

} // namespace brimvale
