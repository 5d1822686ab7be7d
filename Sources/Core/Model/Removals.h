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

/// What a removal that is under way is doing.
enum class RemovalActivity {
    none,
    removing,
    stopping,       ///< it was told to, and ends before its next entry
    asAdministrator ///< waits for a password or for the command, and cannot be stopped
};

struct RemovalState {
    RemovalActivity removalActivity = RemovalActivity::none;
    std::int64_t removedEntries = 0; ///< by the removal under way, or by the last one
    /// The outcome of the most recent removal of any kind. `lastResultChanged` announces every one.
    std::optional<RemovalResult> lastResult = {};
    std::int64_t totalFreedThisSession = 0; ///< bytes freed by every removal since launch
};

/// Starts every removal of the program, one at a time, and tells all parts what is gone. A removal that is
/// asked for while another one is under way is not begun.
class Removals : public Part<RemovalState> {
    Q_OBJECT

public:
    /// All must outlive it. The removal counts as under way until `scan` has dropped what is gone.
    Removals(Workers &workers, RemovalActions &actions, Volumes &volumes, const ScanSession &scan);
    /// Stops a removal.
    ~Removals() override;

    [[nodiscard]] bool isRemoving() const { return state().removalActivity != RemovalActivity::none; }

    /// Removes nodes of the scanned tree. Aggregates are left alone, and what is inside a node that is
    /// removed goes with it. The volumes are read before `gone`.
    void removeNodes(const std::vector<FSNode *> &nodes, RemovalMode mode);

    /// Removes entries of cleanup targets, or what belongs to an application. The volumes are read before
    /// `gone`.
    void removeCleanupEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode);

    /// Removes rows of storage categories. The volumes are read after `gone`.
    void removeCategoryEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode);

    /// Removes for good, as the administrator, what a removal has put into `needsAdmin`. The volumes are read
    /// before `gone`.
    void escalate(const std::vector<FileURL> &urls);

    /// Stops the removal under way before its next entry, where that is possible.
    void stopRemoval();

    /// Publishes the outcome of something that was to end in a removal and did not.
    void publishResult(const RemovalResult &result);

signals:
    void lastResultChanged();
    /// Once a result, after it has been published: everything that lists one of these items drops it.
    void gone(const GonePaths &paths);
    /// A removal has ended: another one can begin.
    void ended();

private:
    /// When the volumes are read after a removal.
    enum class VolumesAreRead { beforeGone, afterGone };

    /// A removal under way.
    struct Removal {
        std::shared_ptr<RemovalProgress> progress;
        VolumesAreRead volumesAreRead;
        bool isDone = false; ///< its result has been published
    };

    void remove(const std::vector<CleanupEntry> &entries, RemovalMode mode, VolumesAreRead when);
    void begin(RemovalActivity activity, VolumesAreRead when,
               std::function<RemovalResult(RemovalProgress &)> work);
    void conclude(const RemovalResult &result, const GonePaths &paths);
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
