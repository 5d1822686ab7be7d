#pragma once

#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Trash/PuttingBack.h"
#include "Platform/TrashContents.h"

#include <cstddef>
#include <cstdint>
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
};

/// What is in the Trash: where the items were, putting them back, and emptying it. The rows and their sizes
/// are those of the storage category whose action says so; there is none where only the system reads the
/// Trash.
class Trash : public Part<TrashState> {
    Q_OBJECT

public:
    /// All must outlive it.
    Trash(Workers &workers, Removals &removals, const Storage &storage);

    /// Puts rows back where they were. Does nothing while that is running, or a removal.
    void putBack(const std::vector<CleanupEntry> &items);

    /// Deletes these rows, and removes the records without items.
    void empty(const std::vector<CleanupEntry> &items);

signals:
    /// Items have left the Trash. Every list of them drops them.
    void gone(const GonePaths &items);
    /// Something is there again: every list that shows these places reads them again.
    void cameBack(const GonePaths &places);
    /// Emitted after both.
    void putBackEnded(const PutBackResult &result);

private:
    using Rows = std::vector<std::pair<FileURL, std::optional<ItemPin>>>;

    void followRows();
    void readRecords();
    void conclude(const PutBackResult &result);

    Workers &workers_;
    Removals &removals_;
    const Storage &storage_;
    Rows rows_;   ///< whose records were asked for last
    int run_ = 0; ///< the number of the latest reading
};

} // namespace brimvale
