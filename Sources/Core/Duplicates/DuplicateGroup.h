#pragma once

#include "Base/FileURL.h"
#include "Platform/EntryRecord.h"
#include "Platform/OpenedItem.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// One of several files with equal contents.
struct DuplicateFile {
    FileURL url;
    EntryRecord record;              ///< as it was while it was compared
    std::int64_t size = 0;           ///< allocated bytes
    std::int64_t names = 1;          ///< that the file has on its file system
    std::optional<ItemPin> pin = {}; ///< only this item is removed
    std::string keptBecause = {};    ///< why it can't be removed, as a sentence; empty if it can
    bool mayShare = false;           ///< it may use the space of an equal file, and does not yet
    bool lends = false;              ///< it already shares its space, so others share with it
    bool freesLess = false;          ///< other files or snapshots use some of its blocks, too
};

/// Files with equal contents, each stored in a place of its own. The one that stays by the rules is first.
struct DuplicateGroup {
    std::int64_t length = 0; ///< of each, in bytes
    std::vector<DuplicateFile> files;

    /// Whether the file at `index` can go while the one at `staying` stays.
    [[nodiscard]] bool mayGo(std::size_t index, std::size_t staying = 0) const {
        return index != staying && files[index].keptBecause.empty();
    }
    /// The allocated bytes of all that can go. A sum above 64 bits ends the program.
    [[nodiscard]] std::int64_t removableBytes(std::size_t staying = 0) const;
};

/// What a search has found.
struct DuplicatesFound {
    std::vector<DuplicateGroup> groups; ///< those that free the most first
    std::int64_t files = 0;             ///< that were large enough to be looked at
    std::int64_t bytes = 0;             ///< their length
    // Those that were not compared, although others have their length:
    std::int64_t withHoles = 0;  ///< parts of them are not stored on this disk
    std::int64_t changed = 0;    ///< they changed while they were read
    std::int64_t unreadable = 0; ///< they could not be read
    bool wasStopped = false;     ///< there may be more

    /// What removing all but one of each group would free. A sum above 64 bits ends the program.
    [[nodiscard]] std::int64_t removableBytes() const;
};

/// Decides which file of a group stays. Reads where the folder for downloads is when it is made.
class StayingRule {
public:
    StayingRule();

    /// The rule, for the user.
    [[nodiscard]] static std::string inWords();

    /// Puts the file that stays first, and the others in the order of the same rule.
    void sort(std::vector<DuplicateFile> &files) const;

private:
    [[nodiscard]] bool isOnlyForAWhile(const FileURL &file) const;

    std::string downloads_;
};

/// Puts the groups that free the most first.
void sortByFreedBytes(std::vector<DuplicateGroup> &groups);

} // namespace brimvale
