#pragma once

#include "Base/Date.h"
#include "Core/Export/ScanOrigin.h"
#include "Core/Model/Part.h"
#include "Core/Model/ScanGrowth.h"
#include "Core/Model/ScanThreads.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Scan/FSNode.h"
#include "Core/Scan/ScanStats.h"

#include <QTimer>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brimvale {

struct ScanOptions;
class Volumes;
class Workers;

/// Where a tree comes from that was not scanned here.
struct ImportedFrom {
    std::string file; ///< the path of the list; empty for a scan as administrator
    ScanOrigin origin;
    bool isByAdministrator = false; ///< it shows this disk as our command line tool saw it
};

struct SessionState {
    std::string scanRootPath;
    /// The last finished scan, sorted; null before the first and during a scan. `treeChanged` announces
    /// another tree; pages must then drop all pointers into the earlier one.
    std::shared_ptr<FSNode> tree = {};
    bool isScanning = false;
    // Figures of the running or the finished scan.
    std::int64_t scanFiles = 0;
    std::int64_t scanBytes = 0;       ///< allocated
    std::string scanCurrentPath = {}; ///< empty when idle
    std::int64_t scanUnreadable = 0;
    double scanElapsed = 0; ///< seconds
    std::optional<Date> lastScanDate = {};
    std::string rescannedPath = {}; ///< the folder that the user had scanned again in place; empty when idle
    /// The ages of the tree's files count from this moment, in seconds since 1970.
    std::uint32_t ageMoment = 0;
    std::optional<ImportedFrom> importedFrom = {}; ///< only while such a tree is shown
};

/// The scan that Browse shows, and its tree.
class ScanSession : public Part<SessionState> {
    Q_OBJECT

public:
    /// Scans a folder like `DiskScanner::scan`.
    using Scan = std::function<std::unique_ptr<FSNode>(const std::string &root, const ScanOptions &options,
                                                       ScanStats &stats, WalkPool &pool)>;

    /// Workers and volumes must outlive it. Another `scan` is for tests.
    ScanSession(Workers &workers, Volumes &volumes);
    ScanSession(Workers &workers, Volumes &volumes, Scan scan);
    /// Cancels all running scans, and does not wait for those that stand in the system.
    ~ScanSession() override;

    /// Sets the folder for the next scan (absolute). A running scan continues.
    void chooseScanRoot(std::string path);

    /// Scans `path` if given, else the current scan root. A running scan is cancelled and superseded.
    void startScan(std::optional<std::string> path = std::nullopt);

    /// Shows a tree that was read from a file (`FSNode::isImported`). A running scan is cancelled. No removal
    /// changes such a tree, and no part of it is scanned again.
    void showImported(std::shared_ptr<FSNode> tree, ImportedFrom from);

    /// The running scan's progress, null when idle. Pages cancel it to stop the scan. That ends the session
    /// at the next look at the progress, even if the scan waits in the system; its result is dropped later.
    [[nodiscard]] const std::shared_ptr<ScanStats> &scanStats() const { return scanStats_; }

    /// Ends the scan session, with the scanned tree or, after a cancellation, without one.
    void finishScan(const std::shared_ptr<FSNode> &found);

    /// Drops removed nodes from the tree, and from the tree of a running scan when it arrives. Does little
    /// work at once, and much work in slices from the event loop. Where a removed item had no node, its
    /// folder is scanned again in the background.
    void drop(const GonePaths &gone);

    /// Scans folders that were removed in part again, in the background, and replaces their contents in the
    /// tree. Also those in the tree of a running scan, when it arrives.
    void measureAgain(const GonePaths &partlyGone);

    /// The same for places with other items than before: their parents are scanned again. Right in the root,
    /// only the item is, where it has a node.
    void readPlacesAgain(const GonePaths &replaced);

    /// The same for folders into which something was moved. One that has no node is new, so its parent is
    /// scanned again, unless that is the root.
    void readGrownAgain(const GonePaths &folders);

    /// Scans one folder of the tree again, in the background and after any other rescan, and replaces its
    /// contents. Does nothing without a tree.
    void rescan(const FileURL &folder);
    /// Stops the rescan of `rescannedPath`, whose contents stay as they are. Other places that are scanned
    /// with it are scanned once more.
    void stopRescan();

    /// The picture that grows while a scan runs, and stays when it is stopped. `grown` announces changes.
    [[nodiscard]] const ScanGrowth &growth() const { return growth_; }

    /// What the running, finished or stopped scan could not read, the first 10,000.
    [[nodiscard]] std::vector<UnreadableItem> unreadableItems() const;

    /// Whether removed nodes are still in the tree. `dropped` announces the end.
    [[nodiscard]] bool isDropping() const { return isDropping_; }

signals:
    void treeChanged();
    void grown();

    /// These nodes will be removed from the tree one by one. Drop all pointers to them now.
    void nodesAboutToBeDetached(const std::vector<FSNode *> &nodes);
    /// Emitted before and after one node is removed from the tree. Before, it is still in its place. After,
    /// it has no parent and the figures of its former ancestors are updated. Only listeners of these signals
    /// may still point to it, and must stop before the second signal returns.
    void nodeAboutToBeDetached(FSNode *node);
    void nodeDetached(FSNode *node);
    /// A folder that was scanned again will get new children; everything is still as it was.
    void replacementBegins(FSNode *folder);
    /// Emitted before and after a folder that was scanned again gets new children. Before, the old ones are
    /// still in their place: drop all pointers to them and their descendants now. After, they no longer exist
    /// and the figures of the folder's ancestors are updated.
    void contentsAboutToBeReplaced(FSNode *folder);
    void contentsReplaced(FSNode *folder);
    void dropped();

private:
    static constexpr std::chrono::milliseconds sliceOfDetaching{8};

    struct Walk {
        std::shared_ptr<ScanStats> stats;
        // Since it began:
        GonePaths gone = {};
        GonePaths partlyGone = {};
        bool hasStopped = false; ///< the session has ended before the walk
    };

    /// Places scanned again, with their new nodes; null where there is no file or folder any more.
    using ScannedPlaces = std::vector<std::pair<FileURL, std::shared_ptr<FSNode>>>;

    struct Rescan {
        std::weak_ptr<FSNode> tree; ///< the one that showed the places
        GonePaths items;            ///< these places
        std::shared_ptr<ScanStats> stats = std::make_shared<ScanStats>();
        GonePaths gone = {}; ///< since it began
    };

    [[nodiscard]] static ScanOptions optionsAt(std::uint32_t moment);
    void pollScan();
    void takeResult(const std::shared_ptr<Walk> &walk, std::shared_ptr<FSNode> found);
    void endStopped();
    void endGrowth(bool hasTree);
    void setTree(std::shared_ptr<FSNode> tree);
    [[nodiscard]] double elapsed() const;
    [[nodiscard]] bool showsThisDisk() const;
    GonePaths dropFromTree(const GonePaths &gone);
    void dropNodes(const GonePaths &gone);
    void countFiles(std::int64_t more);
    void detachSlice();
    void detach(FSNode &node);
    void scanAgain(const GonePaths &items);
    void beginRescan();
    void endRescan(ScannedPlaces found);
    void replace(const ScannedPlaces &places);
    void replaceContents(FSNode &folder, FSNode &found);
    void forgetUnreadable(const FSNode &node);
    void replaceUnreadable(const ScannedPlaces &places, const std::shared_ptr<ScanStats> &stats);
    void unmarkReadable(FSNode *folder);
    void endUserRescan(const GonePaths &items);

    Workers &workers_;
    Volumes &volumes_;
    Scan scan_;
    std::shared_ptr<ScanStats> scanStats_;
    std::shared_ptr<ScanStats> latestStats_; ///< of the scan that is shown, running or not
    ScanGrowth growth_;
    QTimer progressTimer_;
    std::optional<std::chrono::steady_clock::time_point> scanStart_;
    std::vector<std::shared_ptr<Walk>> walks_; ///< still running, including superseded ones
    std::shared_ptr<Rescan> rescan_;           ///< of single places; null if none is running
    GonePaths toScanAgain_;                    ///< when it has ended

    // State of dropping removed nodes:
    bool isDropping_ = false;
    GonePaths dropping_;
    std::vector<FSNode *> waiting_;                 ///< nodes to detach, from the end
    std::vector<std::unique_ptr<FSNode>> detached_; ///< freed in the background afterwards

    ScanThreads threads_; ///< the last member, so that it goes first
};

} // namespace brimvale
