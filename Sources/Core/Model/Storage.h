#pragma once

#include "Base/Date.h"
#include "Catalogs/StorageCategory.h"
#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace brimvale {

class Volumes;
class Workers;

struct StorageState {
    std::vector<MeasuredCategory> categories; ///< in catalog order
    bool isMeasuringCategories = false;
    double categoryProgress = 0; ///< 0 to 1
    std::optional<Date> lastCategoryScan = {};
};

/// The categories into which the used space of the root volume is divided.
class Storage : public Part<StorageState> {
    Q_OBJECT

public:
    /// Both must outlive it.
    Storage(Workers &workers, const Volumes &volumes);

    /// Measures every storage category; each is published as it is done, the rows of System Data last. Does
    /// nothing while one runs.
    void measureCategories();

    /// The category of that identifier; null where there is none. Valid until the next change.
    [[nodiscard]] const MeasuredCategory *category(std::string_view id) const;
    /// Bytes of all categories but System Data.
    [[nodiscard]] std::int64_t categorisedBytes() const;
    /// Bytes of the rows of System Data.
    [[nodiscard]] std::int64_t systemDataAccounted() const;

    /// Makes System Data what the used space of the root volume leaves after all other categories, once
    /// there are figures to compare.
    void resolveRemainder();

    /// Takes what is gone out of every category, also out of those that are still being measured, and has
    /// System Data follow.
    void drop(const GonePaths &gone);

private:
    [[nodiscard]] bool hasFigures() const;
    void resolveRemainder(StorageState &state) const;
    void show(MeasuredCategory measured, double progress);
    void finish(std::vector<CleanupEntry> rows);

    Workers &workers_;
    const Volumes &volumes_;
    GonePaths goneSinceBegin_; ///< while it measures
};

} // namespace brimvale
