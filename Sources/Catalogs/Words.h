#pragma once

#include <string>

namespace brimvale {

/// What texts say differently on each system. Each comment quotes a Mac's words where they are short.
struct Words {
    std::string thisComputer;      ///< "this Mac"
    std::string theSystem;         ///< "macOS"
    std::string rootName;          ///< the item at "/": "Macintosh HD"
    std::string includeSystemApps; ///< the switch that lists the system's applications too

    std::string revealItem;     ///< shows an item in the program for files: "Reveal in Finder"
    std::string openFolder;     ///< "Open in Finder"
    std::string showBackupCopy; ///< "Show this copy in Finder"

    std::string grantAccess;    ///< the button for the permission that `AccessProbes` test
    std::string whyGrantAccess; ///< its tool tip
    std::string measuringHelp;  ///< what would let something unreadable be measured, as a sentence
    std::string listingHelp;    ///< what would let a folder be listed, as a sentence

    std::string purgeableSpace;  ///< follows a size and a space: "of the free space is purgeable, …"
    std::string unreadableSpace; ///< what nothing readable explains, after a colon and a space, and advice
    std::string snapshotsTitle;  ///< "Time Machine local snapshots"
    std::string snapshotsRemark; ///< why no snapshot has a size

    /// The words of the system in force.
    [[nodiscard]] static const Words &current();
};

} // namespace brimvale
