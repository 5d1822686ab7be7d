#pragma once

#include "Base/Date.h"
#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Scan/FSNode.h"

#include <QTimer>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

class ScanStats;
class Volumes;
class Workers;

struct SessionState {
    std::string scanRootPath;
    /// The last finished scan, sorted; null before the first and while one runs. Another tree is announced by
    /// `treeChanged`, and a page must let go of the earlier one then.
    std::shared_ptr<FSNode> tree = {};
    bool isScanning = false;
    // Of the running scan, or of the finished one.
    std::int64_t scanFiles = 0;
    std::int64_t scanBytes = 0;       ///< allocated
    std::string scanCurrentPath = {}; ///< empty when idle
    std::int64_t scanUnreadable = 0;
    double scanElapsed = 0; ///< seconds
    std::optional<Date> lastScanDate = {};
};

/// The scan that Browse shows, and the tree that it has found.
class ScanSession : public Part<SessionState> {
    Q_OBJECT

public:
    /// Both must outlive it.
    ScanSession(Workers &workers, Volumes &volumes);
    /// Cancels every scan that runs.
    ~ScanSession() override;

    /// Sets the folder that the next scan measures (absolute); a running scan goes on.
    void chooseScanRoot(std::string path);

    /// Scans `path` if given, else the current scan root. A running scan is cancelled and superseded.
    void startScan(std::optional<std::string> path = std::nullopt);

    /// The running scan's progress, null when idle. A page stops the scan by cancelling it.
    [[nodiscard]] const std::shared_ptr<ScanStats> &scanStats() const { return scanStats_; }

    /// Ends the scan session, with the tree that it found or, after a cancellation, with none.
    void finishScan(const std::shared_ptr<FSNode> &found);

    /// Takes what is gone out of the tree, and out of that of a running scan once it is there: at once where
    /// it is little, else from the event loop, a slice at a time.
    void drop(const GonePaths &gone);

    /// Whether nodes that are gone are still in the tree. `dropped` tells when this ends.
    [[nodiscard]] bool isDropping() const { return isDropping_; }

signals:
    void treeChanged();

    /// These are going to be removed from the tree, one after the other: time to let go of all at once.
    void nodesAboutToBeDetached(const std::vector<FSNode *> &nodes);
    /// Around the removal of one node from the tree. Before, it is still in its place; afterwards it stands
    /// alone and the figures of its former parents are updated. Only those who listen may still have it; it
    /// must be let go of before the second announcement is over.
    void nodeAboutToBeDetached(FSNode *node);
    void nodeDetached(FSNode *node);
    void dropped();

private:
    struct Walk {
        std::shared_ptr<ScanStats> stats;
        GonePaths gone; ///< removed since it began
    };

    void pollScan();
    void setTree(std::shared_ptr<FSNode> tree);
    [[nodiscard]] double elapsed() const;
    void dropFromTree(const GonePaths &gone);
    void detachSlice();
    void detach(FSNode &node);

    Workers &workers_;
    Volumes &volumes_;
    std::shared_ptr<ScanStats> scanStats_;
    QTimer progressTimer_;
    std::optional<std::chrono::steady_clock::time_point> scanStart_;
    std::vector<std::shared_ptr<Walk>> walks_; ///< that have not returned, superseded ones included

    // Of what is being dropped.
    bool isDropping_ = false;
    GonePaths dropping_;
    std::vector<FSNode *> waiting_;                 ///< to be detached, from the end
    std::vector<std::unique_ptr<FSNode>> detached_; ///< freed in the background afterwards
};

} // namespace brimvale
