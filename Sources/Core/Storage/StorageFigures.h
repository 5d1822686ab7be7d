#pragma once

#include "Catalogs/StorageCategory.h"
#include "Core/Storage/VolumeInfo.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The arithmetic of the overview: values in, values out. All figures are bytes.
namespace StorageFigures {

/// The categories without figures, at the start of a run.
[[nodiscard]] std::vector<MeasuredCategory> unmeasured(const std::vector<StorageCategory> &categories);

/// The total of all measured categories.
[[nodiscard]] std::int64_t categorisedBytes(const std::vector<MeasuredCategory> &categories);

/// The total of the rows of System Data; 0 where there is no such category.
[[nodiscard]] std::int64_t systemDataAccounted(const std::vector<MeasuredCategory> &categories);

/// Sets the size of System Data to the used space of the root volume minus all other categories, at least 0.
/// Returns whether that changed anything; without a root volume nothing changes. Purgeable space counts as
/// used.
bool resolveRemainder(std::vector<MeasuredCategory> &categories, const std::optional<VolumeInfo> &root);

/// The categories with the size of System Data set to the used space of the root volume minus all other
/// categories, at least 0. Unchanged without a root volume. Purgeable space counts as used.
[[nodiscard]] std::vector<MeasuredCategory> resolvingRemainder(std::vector<MeasuredCategory> categories,
                                                               const std::optional<VolumeInfo> &root);

/// A sentence that compares the total of the rows of System Data with its size, the headline; nothing without
/// rows.
[[nodiscard]] std::optional<std::string> systemDataSentence(std::int64_t accounted, std::int64_t headline);

/// The same with the categories' own figures; nothing without System Data.
[[nodiscard]] std::optional<std::string> systemDataSentence(const std::vector<MeasuredCategory> &categories);

/// The places of all categories of which a part could not be read, each once.
[[nodiscard]] std::vector<std::string> incompletePlaces(const std::vector<MeasuredCategory> &categories);

/// A sentence about the rows on other volumes, which the size of the category leaves out; nothing without
/// such rows.
[[nodiscard]] std::optional<std::string> elsewhereSentence(const MeasuredCategory &category);

} // namespace StorageFigures

} // namespace brimvale
