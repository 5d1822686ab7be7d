#pragma once

#include "Base/StopFlag.h"
#include "Core/Apps/Orphan.h"
#include "Core/Model/Part.h"
#include "Core/Model/RowMeasuring.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

class Apps;
class Removals;
class Workers;

struct OrphanState {
    std::vector<Orphan> orphans; ///< the largest first
    std::vector<std::string> unreadFolders;
    bool isSearching = false;
    bool wasSearched = false; ///< a search has ended
    bool wasStopped = false;  ///< before it had looked at everything
};

/// The leftovers of applications that are gone. Nothing is searched before the first `search`; from then on
/// the list follows the installed applications.
class OrphanSearch : public Part<OrphanState> {
    Q_OBJECT

public:
    /// All must outlive it.
    OrphanSearch(Workers &workers, Removals &removals, const Apps &apps);
    /// Stops the search.
    ~OrphanSearch() override;

    /// Searches in the background. The list stays until there is a new one. While a search is running,
    /// another one follows it.
    void search();

    /// The same, but only if a search has ended or is running.
    void searchAgain();

    /// Stops the search soon, and keeps what it has found.
    void stop();

    /// Removes some of the orphans, like `Removals`.
    void remove(const std::vector<LeftoverItem> &items, RemovalMode mode,
                const std::optional<FreePromise> &promise = {});

    /// Drops removed orphans, including those still being searched, and measures again what contains removed
    /// items. Announces only a change.
    void drop(const GonePaths &gone);

    /// Measures again, in the background, what shows items that were removed in part.
    void measureAgain(const GonePaths &partlyGone);

private:
    void followApps();
    void show(Orphans found);
    [[nodiscard]] std::vector<FileURL> rowsTouchedBy(const GonePaths &items) const;
    void updateRows(const RowMeasuring::Rows &sizes);

    Workers &workers_;
    Removals &removals_;
    const Apps &apps_;
    std::vector<FileURL> installed_; ///< the applications as they were listed last
    StopFlag stop_;                  ///< of the running or the last search
    bool searchesAgain_ = false;
    RowMeasuring rowMeasuring_;
    // Since the search began:
    GonePaths goneSinceBegin_;
    GonePaths touchedSinceBegin_;
};

} // namespace brimvale
