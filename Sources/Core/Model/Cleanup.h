#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupTarget.h"
#include "Core/Model/LatestRun.h"
#include "Core/Model/Part.h"
#include "Core/Model/RowMeasuring.h"
#include "Core/Removal/GonePaths.h"

#include <vector>

namespace brimvale {

class Workers;

struct CleanupState {
    std::vector<CleanupTarget> cleanupTargets; ///< in catalog order
    bool isMeasuringCleanup = false;
    double cleanupProgress = 0; ///< 0 to 1
};

/// The places whose contents programs create again.
class Cleanup : public Part<CleanupState> {
    Q_OBJECT

public:
    /// `workers` must outlive it.
    explicit Cleanup(Workers &workers);
    /// Stops measuring.
    ~Cleanup() override;

    /// Measures every cleanup target, and publishes each when it is measured. Does nothing while it is
    /// already running.
    void measureCleanup();

    /// Stops measuring soon. Targets that are not measured yet stay as they were before.
    void stopMeasuring();

    /// Drops removed items from every target, including those still being measured, and measures the entries
    /// again that contain removed items. Announces only a change.
    void drop(const GonePaths &gone);

    /// Measures the target of the Trash again, in the background, if it is measured: items were moved there.
    void listTrashAgain();

    /// Measures again, in the background, what shows items that were removed in part.
    void measureAgain(const GonePaths &partlyGone);

private:
    void show(CleanupTarget measured, double progress);
    [[nodiscard]] std::vector<FileURL> entriesTouchedBy(const GonePaths &items) const;
    void updateEntries(const RowMeasuring::Rows &sizes);

    Workers &workers_;
    StopFlag stop_; ///< of the running or the last run
    RowMeasuring rowMeasuring_;
    LatestRun trashRun_;
    // Since measuring began:
    GonePaths goneSinceBegin_;
    GonePaths touchedSinceBegin_;
    bool isTrashFilledSinceBegin_ = false;
};

} // namespace brimvale
