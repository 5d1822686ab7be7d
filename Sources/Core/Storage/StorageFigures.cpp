#include "Core/Storage/StorageFigures.h"

#include "Base/Bytes.h"
#include "Catalogs/Words.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

auto remainderIn(auto &categories) {
    return std::find_if(categories.begin(), categories.end(), [](const MeasuredCategory &one) {
        return one.category.measurement == CategoryMeasurement::remainder;
    });
}

} // namespace

std::vector<MeasuredCategory> StorageFigures::unmeasured(const std::vector<StorageCategory> &categories) {
    std::vector<MeasuredCategory> unmeasured;
    for (const StorageCategory &category : categories)
        unmeasured.push_back({.category = category});
    return unmeasured;
}

std::int64_t StorageFigures::categorisedBytes(const std::vector<MeasuredCategory> &categories) {
    std::int64_t total = 0;
    for (const MeasuredCategory &one : categories)
        if (one.category.measurement == CategoryMeasurement::measured)
            total = checkedAdd(total, one.size);
    return total;
}

std::int64_t StorageFigures::systemDataAccounted(const std::vector<MeasuredCategory> &categories) {
    const auto systemData = remainderIn(categories);
    return systemData == categories.end() ? 0 : CleanupEntries::sizeHere(systemData->entries);
}

bool StorageFigures::resolveRemainder(std::vector<MeasuredCategory> &categories,
                                      const std::optional<VolumeInfo> &root) {
    const auto systemData = remainderIn(categories);
    if (!root || systemData == categories.end())
        return false;
    const std::int64_t remaining = std::max<std::int64_t>(root->used() - categorisedBytes(categories), 0);
    const bool hasNewSize = std::exchange(systemData->size, remaining) != remaining;
    return !std::exchange(systemData->measured, true) || hasNewSize;
}

std::vector<MeasuredCategory> StorageFigures::resolvingRemainder(std::vector<MeasuredCategory> categories,
                                                                 const std::optional<VolumeInfo> &root) {
    resolveRemainder(categories, root);
    return categories;
}

std::optional<std::string> StorageFigures::systemDataSentence(std::int64_t accounted, std::int64_t headline) {
    if (accounted < 1)
        return std::nullopt;
    const std::int64_t remaining = headline - accounted;
    if (remaining > 0)
        return "The locations above account for " + Fmt::byteFormatter(accounted) + " of the " +
               Fmt::byteFormatter(headline) + ". The remaining " + Fmt::byteFormatter(remaining) +
               " is not attributable to anything readable: " + Words::current().unreadableSpace;
    return "The locations above cover all of it, and then some: they total " + Fmt::byteFormatter(accounted) +
           " against a headline of " + Fmt::byteFormatter(headline) +
           ". Folders are listed whole even when another category already counted part of them, so the two "
           "can overlap. The headline number is the one that matches your disk.";
}

std::optional<std::string>
StorageFigures::systemDataSentence(const std::vector<MeasuredCategory> &categories) {
    const auto systemData = remainderIn(categories);
    if (systemData == categories.end())
        return std::nullopt;
    return systemDataSentence(systemDataAccounted(categories), systemData->size);
}

std::vector<std::string> StorageFigures::incompletePlaces(const std::vector<MeasuredCategory> &categories) {
    std::vector<std::string> places;
    for (const MeasuredCategory &one : categories)
        for (const std::string &place : one.incomplete)
            if (std::find(places.begin(), places.end(), place) == places.end())
                places.push_back(place);
    return places;
}

std::optional<std::string> StorageFigures::elsewhereSentence(const MeasuredCategory &category) {
    const std::int64_t elsewhere =
        CleanupEntries::totalSize(category.entries) - CleanupEntries::sizeHere(category.entries);
    if (elsewhere < 1)
        return std::nullopt;
    return Fmt::byteFormatter(elsewhere) + " of the items above are on other volumes. They are not part of "
                                           "this figure, which counts only the system’s volume.";
}

} // namespace brimvale
