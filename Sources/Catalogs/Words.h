#pragma once

#include <string>

namespace brimvale {

/// Texts that differ between systems. The comments quote a Mac's words where they are short.
struct Words {
    std::string thisComputer;      ///< "this Mac"
    std::string theSystem;         ///< "macOS"
    std::string rootName;          ///< the name for "/": "Macintosh HD"
    std::string noBytes;           ///< the size of something empty: "Zero KB"
    std::string includeSystemApps; ///< the switch that also lists the system's applications

    // About the files of an application:
    std::string whyDefinitely;  ///< why they belong to it: "Matched on bundle identifier."
    std::string whyPossibly;    ///< why they may belong to it: "Matched on name only, …"
    std::string noOtherFiles;   ///< "No files found outside the bundle."
    std::string stillSearching; ///< "The files outside the bundle are still being looked for."
    std::string chooseApp;      ///< what selecting an application shows

    std::string revealItem;     ///< shows an item in the file browser: "Reveal in Finder"
    std::string openFolder;     ///< "Open in Finder"
    std::string showBackupCopy; ///< "Show this copy in Finder"

    std::string grantAccess;       ///< the button for the permission that `AccessProbes` test
    std::string whyGrantAccess;    ///< its tool tip
    std::string accessNoticeTitle; ///< of the notice before the first scan without that permission
    std::string accessNotice;      ///< what the system will ask, in a few sentences
    std::string accessAdvice;      ///< what the permission changes
    std::string measuringHelp;     ///< how to let the program measure unreadable items, as a sentence
    std::string listingHelp;       ///< how to let the program list a folder, as a sentence

    std::string freesAtMost; ///< that a removal may free less than its size, as a sentence; not told on a Mac
    std::string atMost;      ///< the same after the size of a selection: " at most"

    std::string purgeableSpace;  ///< after a size and a space: "of the free space is purgeable, …"
    std::string unreadableSpace; ///< after a colon and a space: what unreadable space may be, and advice
    std::string snapshotsTitle;  ///< "Time Machine local snapshots"
    std::string snapshotsRemark; ///< why snapshots have no sizes

    /// The words of the selected system.
    [[nodiscard]] static const Words &current();
};

} // namespace brimvale
