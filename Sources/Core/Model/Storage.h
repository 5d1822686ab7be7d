#pragma once

#include "Base/Date.h"
#include "Base/StopFlag.h"
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
    bool wasStopped = false;     ///< the last run was stopped: it has left categories without figures
    double categoryProgress = 0; ///< 0 to 1
    std::optional<Date> lastCategoryScan = {};
};

/// The categories that divide the used space of the root volume.
class Storage : public Part<StorageState> {
    Q_OBJECT

public:
    /// Both must outlive it.
    Storage(Workers &workers, const Volumes &volumes);
    /// Stops measuring.
    ~Storage() override;

    /// Measures every storage category, and publishes each when it is measured, the rows of System Data last.
    /// Does nothing while it is already running.
    void measureCategories();

    /// Stops measuring soon. Categories that are measured keep their figures; the others have none, and
    /// System Data, which is what they leave, has none either.
    void stopMeasuring();

    /// The category with this identifier; null if there is none. Valid until the next change.
    [[nodiscard]] const MeasuredCategory *category(std::string_view id) const;
    /// The bytes of all categories except System Data.
    [[nodiscard]] std::int64_t categorisedBytes() const;
    /// The bytes of the rows of System Data.
    [[nodiscard]] std::int64_t systemDataAccounted() const;

    /// Sets System Data to the used space of the root volume minus all other categories, once these are
    /// measured.
    void resolveRemainder();

    /// Drops removed rows from every category, including those still being measured, and updates System Data.
    void drop(const GonePaths &gone);

    /// Measures again, in the background, what shows items that were removed in part.
    void measureAgain(const GonePaths &partlyGone);

private:
    [[nodiscard]] bool hasFigures() const;
    void resolveRemainder(StorageState &state) const;
    void show(MeasuredCategory measured, double progress);
    void finish(std::vector<CleanupEntry> rows);
    void measureRowsAgain(const GonePaths &partlyGone);

    Workers &workers_;
    const Volumes &volumes_;
    StopFlag stop_; ///< of the running or the last run
    // Since measuring began:
    GonePaths goneSinceBegin_;
    GonePaths partlyGoneSinceBegin_;
};

} // namespace brimvale
