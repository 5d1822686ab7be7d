#pragma once

#include "Base/Date.h"
#include "Base/StopFlag.h"
#include "Catalogs/StorageCategory.h"
#include "Core/Model/LatestRun.h"
#include "Core/Model/Part.h"
#include "Core/Model/RowMeasuring.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Storage/HiddenSpace.h"
#include "Platform/PrivilegedRunner.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

class RemovalActions;
class Volumes;
class Workers;

struct StorageState {
    std::vector<MeasuredCategory> categories; ///< in catalog order
    bool isMeasuringCategories = false;
    bool wasStopped = false;     ///< the last run was stopped: it has left categories without figures
    double categoryProgress = 0; ///< 0 to 1
    std::optional<Date> lastCategoryScan = {};
    HiddenSpace hiddenSpace = {}; ///< as it was when measuring ended
    bool isMeasuringAsAdministrator = false;
};

/// The categories that divide the used space of the root volume.
class Storage : public Part<StorageState> {
    Q_OBJECT

public:
    /// Returns the categories to measure.
    using Definitions = std::function<std::vector<StorageCategory>()>;

    /// `workers`, `volumes` and `actions` must outlive it.
    Storage(Workers &workers, Volumes &volumes, RemovalActions &actions, Definitions definitions);
    /// Stops measuring.
    ~Storage() override;

    /// Reads the volumes, measures every storage category, and publishes each when it is measured, the rows
    /// of System Data last. Does nothing while it is already running.
    void measureCategories();

    /// Stops measuring soon. Categories that are measured keep their figures; the others have none, and
    /// System Data, which is what they leave, has none either.
    void stopMeasuring();

    /// Measures the places of which a part could not be read as administrator, once everything is measured,
    /// and gives their rows these sizes. Calls `done` at its end with the reason why it could not, unless
    /// measuring has begun again. Does nothing while anything is being measured.
    void measureAsAdministrator(const std::function<void(std::optional<PrivilegedRunError>)> &done);

    /// The places of which a part could not be read.
    [[nodiscard]] std::vector<std::string> incompletePlaces() const;

    /// Sentences about what System Data consists of that no row shows.
    [[nodiscard]] std::vector<std::string> hiddenSpaceSentences() const;

    /// The category with this identifier; null if there is none. Valid until the next change.
    [[nodiscard]] const MeasuredCategory *category(std::string_view id) const;
    /// The bytes of all categories except System Data.
    [[nodiscard]] std::int64_t categorisedBytes() const;
    /// The bytes of the rows of System Data.
    [[nodiscard]] std::int64_t systemDataAccounted() const;

    /// Sets System Data to the used space of the root volume minus all other categories, once any of these is
    /// measured. Announces only a change.
    void resolveRemainder();

    /// Drops removed rows from every category, including those still being measured, updates System Data, and
    /// measures the rows again that contain removed items. Announces only a change.
    void drop(const GonePaths &gone);

    /// Measures the category of the Trash again, in the background, if it is measured: items were moved
    /// there.
    void listTrashAgain();

    /// Measures the categories and rows again that show these places, in the background: something is there
    /// again.
    void readPlacesAgain(const GonePaths &places);

    /// Measures again, in the background, what shows items that were removed in part.
    void measureAgain(const GonePaths &partlyGone);

private:
    [[nodiscard]] bool hasFigures() const;
    void listAgain(const MeasuredCategory &listed);
    bool resolveRemainderIn(StorageState &state) const;
    [[nodiscard]] std::optional<FileURL> measuredVolume() const;
    void show(MeasuredCategory measured, double progress);
    struct Remainder;
    void finish(Remainder remainder);
    void takeRows(const std::vector<CleanupEntry> &rows);
    [[nodiscard]] std::vector<FileURL> rowsTouchedBy(const GonePaths &items) const;
    void updateRows(const RowMeasuring::Rows &sizes);

    Workers &workers_;
    Volumes &volumes_;
    RemovalActions &actions_;
    StopFlag stop_; ///< of the running or the last run
    Definitions definitions_;
    RowMeasuring rowMeasuring_;
    std::map<std::string, LatestRun, std::less<>> listRuns_; ///< of categories, by their identifiers
    int administratorRun_ = 0;                               ///< to know the latest one
    // Since measuring began:
    GonePaths goneSinceBegin_;
    GonePaths touchedSinceBegin_;
    bool isTrashFilledSinceBegin_ = false;
};

} // namespace brimvale
