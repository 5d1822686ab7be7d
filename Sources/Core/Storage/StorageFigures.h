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

/// The categories with no figures yet, as a run begins.
[[nodiscard]] std::vector<MeasuredCategory> unmeasured(const std::vector<StorageCategory> &categories);

/// What all measured categories together hold.
[[nodiscard]] std::int64_t categorisedBytes(const std::vector<MeasuredCategory> &categories);

/// What the rows of System Data together hold; 0 where there is no such category.
[[nodiscard]] std::int64_t systemDataAccounted(const std::vector<MeasuredCategory> &categories);

/// The categories with System Data's size made what the used space of the root volume leaves after all the
/// others, at least 0. Without a root volume they stay as they are. Purgeable space counts as used.
[[nodiscard]] std::vector<MeasuredCategory> resolvingRemainder(std::vector<MeasuredCategory> categories,
                                                               const std::optional<VolumeInfo> &root);

/// Compares what the rows of System Data account for with its size, the headline; nothing without rows.
[[nodiscard]] std::optional<std::string> systemDataSentence(std::int64_t accounted, std::int64_t headline);

/// The same for the categories' own figures; nothing without System Data.
[[nodiscard]] std::optional<std::string> systemDataSentence(const std::vector<MeasuredCategory> &categories);

} // namespace StorageFigures

} // namespace brimvale
