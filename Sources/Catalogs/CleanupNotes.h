#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupRule.h"
#include "Catalogs/EqualFile.h"
#include "Catalogs/ProgramSigns.h"
#include "Platform/OpenedItem.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// What a catalog knows about one entry of a cleanup target, besides its place.
struct CleanupNotes {
    std::string name = {};        ///< for people, in place of the file name; empty for none
    std::string keptBecause = {}; ///< why it cannot be removed here, as a sentence; empty if it can
    std::string command = {};     ///< removes it in its own way, for the user to copy; empty for none
    bool freesLess = false;       ///< other files may share its blocks
    std::shared_ptr<const ProgramSigns> program = {}; ///< should not run when it is removed
    bool isInUse = false;                             ///< that program was running when it was listed
    std::shared_ptr<const CleanupRule> rule = {};     ///< what it has to be when it is removed
    std::shared_ptr<const EqualFile> equal = {};      ///< has to stay when it is removed, as a duplicate
    std::vector<ItemPin> companions = {}; ///< files that go when it is gone; its size includes theirs

    /// Looks at the item right before it is removed: why it stays, as a sentence; nothing if it may go, or
    /// once `stopped` is set. Empty for no such look.
    std::function<std::optional<std::string>(const OpenedItem &item, const StopFlag &stopped)> lastLook = {};

    /// Whether they say the same to the user.
    friend bool operator==(const CleanupNotes &a, const CleanupNotes &b) {
        return a.name == b.name && a.keptBecause == b.keptBecause && a.command == b.command &&
               a.freesLess == b.freesLess && a.isInUse == b.isInUse;
    }
};

/// The items of a cleanup target to measure.
struct CleanupFinding {
    struct Item {
        std::string path; ///< absolute
        std::shared_ptr<const CleanupNotes> notes = {};
    };

    std::vector<std::string> roots = {}; ///< the places that exist, absolute
    std::vector<Item> items = {};
};

} // namespace brimvale
