#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Removal/RemovalResult.h"

#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brimvale {

class FSNode;
class RemovalActions;
class ScanSession;
class Volumes;
class Workers;
struct RemovalProgress;

/// The phase of a removal.
enum class RemovalActivity {
    none,
    removing,
    stopping,       ///< cancelled; ends before its next entry
    asAdministrator ///< waits for a password or the command; cannot be stopped
};

struct RemovalState {
    RemovalActivity removalActivity = RemovalActivity::none;
    std::int64_t removedEntries = 0; ///< by the running removal, or the last one
    /// The bytes of a backup to read before its originals are removed, and how many have been read.
    std::int64_t bytesToVerify = 0;
    std::int64_t bytesVerified = 0;
    /// The result of the most recent removal of any kind. `lastResultChanged` announces each.
    std::optional<RemovalResult> lastResult = {};
    std::int64_t totalFreedThisSession = 0; ///< the sum of `bytesFreed` of every removal since launch
    // The bytes behind it since launch, without those put back. Only deleting frees space.
    std::int64_t movedToTrashThisSession = 0;
    std::int64_t deletedThisSession = 0;
};

/// Starts every removal of the program, one at a time, and announces to all parts what is gone. A removal
/// requested while another one is running is not started. Where the user was told what deleting the items
/// frees, the result is compared with that promise.
class Removals : public Part<RemovalState> {
    Q_OBJECT

public:
    /// All must outlive it. A removal is running until `scan` has dropped its items.
    Removals(Workers &workers, RemovalActions &actions, Volumes &volumes, const ScanSession &scan);
    /// Cancels a running removal.
    ~Removals() override;

    [[nodiscard]] bool isRemoving() const { return state().removalActivity != RemovalActivity::none; }

    /// Removes nodes of the scanned tree, except aggregates. Descendants of other given nodes go with those.
    /// The volumes are read before `gone`.
    void removeNodes(const std::vector<FSNode *> &nodes, RemovalMode mode,
                     const std::optional<FreePromise> &promise = {});

    /// Removes entries of cleanup targets, or an application and its leftovers. The volumes are read before
    /// `gone`.
    void removeCleanupEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                              const std::optional<FreePromise> &promise = {});

    /// Removes rows of storage categories. The volumes are read after `gone`.
    void removeCategoryEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                               const std::optional<FreePromise> &promise = {});

    /// The same, with a removal of its own: `work` removes the items in the background.
    void removeCategoryEntries(const std::vector<FileURL> &items,
                               std::function<RemovalResult(RemovalProgress &, RemovalActions &)> work);

    /// Removes for good, as the administrator, what a removal has put into `needsAdmin`; only the items that
    /// this removal found, where its result is given. The volumes are read before `gone`.
    void escalate(const std::vector<FileURL> &urls, const RemovalResult &of = RemovalResult());

    /// Stops the running removal before its next entry, if possible.
    void stopRemoval();

    /// Notes that items this session moved to the Trash are out of it again, with these bytes in all.
    void notePutBack(std::int64_t bytes);

    /// Publishes a result without a removal, for work that failed before one could start.
    void publishResult(const RemovalResult &result);

signals:
    void lastResultChanged();
    /// Emitted once per result, after it is published. Every list of these items drops them.
    void gone(const GonePaths &paths);
    /// Emitted after `gone` if items were deleted only in part: every list that shows these items, or others
    /// inside or around them, measures them again.
    void partlyGone(const GonePaths &paths);
    /// Emitted after `gone` if other items were in the places of those to be removed: every list that shows
    /// these places reads them again, so that the user sees what is there and can remove that.
    void replaced(const GonePaths &paths);
    /// Emitted after `gone` if items were moved to the Trash, with the places where the Trash can be in the
    /// home folder: lists that show these measure them again.
    void movedToTrash(const GonePaths &trash);
    /// A removal has ended; another one can start.
    void ended();

private:
    /// When the volumes are read after a removal.
    enum class VolumesAreRead { beforeGone, afterGone };

    /// The running removal.
    struct Removal {
        std::shared_ptr<RemovalProgress> progress;
        VolumesAreRead volumesAreRead;
        bool isDone = false; ///< its result has been published
    };

    void remove(const std::vector<CleanupEntry> &entries, RemovalMode mode, VolumesAreRead when,
                const std::optional<FreePromise> &promise);
    void begin(RemovalActivity activity, VolumesAreRead when, std::vector<FileURL> items,
               std::function<RemovalResult(RemovalProgress &)> work,
               const std::optional<FreePromise> &promise = {});
    /// A result with the paths that it changes, found in the background.
    struct Outcome {
        RemovalResult result;
        GonePaths gone;
        GonePaths partlyGone;
        GonePaths replaced;
    };

    [[nodiscard]] static Outcome outcomeOf(RemovalResult result);
    void conclude(const Outcome &outcome);
    void showProgress();
    void endIfDropped();

    Workers &workers_;
    RemovalActions &actions_;
    Volumes &volumes_;
    const ScanSession &scan_;
    std::optional<Removal> removal_;
    QTimer timer_;
};

} // namespace brimvale
