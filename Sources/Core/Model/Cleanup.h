#pragma once

#include "Catalogs/CleanupTarget.h"
#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"

#include <vector>

namespace brimvale {

class Workers;

struct CleanupState {
    std::vector<CleanupTarget> cleanupTargets; ///< in catalog order
    bool isMeasuringCleanup = false;
    double cleanupProgress = 0; ///< 0 to 1
};

/// The places whose contents can be removed and come back on their own.
class Cleanup : public Part<CleanupState> {
    Q_OBJECT

public:
    /// `workers` must outlive it.
    explicit Cleanup(Workers &workers);

    /// Measures every cleanup target; each is published as it is done. Does nothing while one runs.
    void measureCleanup();

    /// Takes what is gone out of every target, also out of those that are still being measured.
    void drop(const GonePaths &gone);

private:
    void show(CleanupTarget measured, double progress);

    Workers &workers_;
    GonePaths goneSinceBegin_; ///< while it measures
};

} // namespace brimvale
