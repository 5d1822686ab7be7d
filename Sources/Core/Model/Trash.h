#pragma once

#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Trash/PuttingBack.h"
#include "Platform/TrashContents.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace brimvale {

class Removals;
class Storage;
class Workers;

struct TrashState {
    std::unordered_map<FileURL, TrashRecord> records; ///< what is known about the rows of the category
    std::int64_t lostItems = 0;                       ///< records without an item
    bool isPuttingBack = false;
    bool canUndo = false; ///< items that this session moved to the Trash are there, as far as is known
};

/// What is in the Trash: where the items were, putting them back, and emptying it. It also puts back what a
/// removal of this session has moved there, on systems too whose Trash only their file browser reads. The
/// rows and their sizes are those of the storage category whose action says so; there is none where only the
/// system reads the Trash.
class Trash : public Part<TrashState> {
    Q_OBJECT

public:
    /// All must outlive it.
    Trash(Workers &workers, Removals &removals, const Storage &storage);

    /// Puts rows back where they were. Does nothing while that is running, or a removal.
    void putBack(const std::vector<CleanupEntry> &items);

    /// Puts back what these removals of the session moved to the Trash: the latest one, or this one. Does
    /// nothing where there is none, and while something is being put back or removed.
    void undo();
    void undo(const RemovalResult &removal);

    /// Whether something of this removal can still be put back.
    [[nodiscard]] bool canUndo(const RemovalResult &removal) const;

    /// Whether this system lets programs read the Trash.
    [[nodiscard]] bool isReadable() const;

    /// Reads what is in the Trash; announces it with `wasListed`.
    void list();

    /// Deletes these rows, and removes the records without items.
    void empty(const std::vector<CleanupEntry> &items);

signals:
    /// Items have left the Trash. Every list of them drops them.
    void gone(const GonePaths &items);
    /// Something is there again: every list that shows these places reads them again.
    void cameBack(const GonePaths &places);
    /// Emitted after both for `putBack`, and for `undo`.
    void putBackEnded(const PutBackResult &result);
    void undone(const PutBackResult &result);
    void wasListed(const std::vector<brimvale::CleanupEntry> &items);

private:
    using Moves = std::vector<MovedToTrash>; ///< of one removal

    using Rows = std::vector<std::pair<FileURL, std::optional<ItemPin>>>;

    void followRows();
    void readRecords();
    void noteMoves();
    void undo(const Moves &moves);
    template<class Items, class Use>
    void begin(const Items &items, Use use);
    [[nodiscard]] const Moves *movesOf(const RemovalResult &removal) const;
    void conclude(const PutBackResult &result);
    void dropMoves(const std::function<bool(const MovedToTrash &)> &isDone);

    Workers &workers_;
    Removals &removals_;
    const Storage &storage_;
    std::vector<Moves> moves_; ///< of the session, the latest last; none is empty
    Rows rows_;                ///< whose records were asked for last
    int run_ = 0;              ///< the number of the latest reading
};

} // namespace brimvale
