#include "Catalogs/Linux/Catalog.h"

namespace brimvale::linuxCatalog {

/// Linux has no permission for all files, so its texts are never shown.
Words words() {
    return {
        .thisComputer = "this computer",
        .theSystem = "the system",
        .rootName = "File system",
        .noBytes = "0 bytes",
        .includeSystemApps = "Include system apps",
        .whyDefinitely = "Matched on the app’s identifier, or on a list of well-known apps.",
        .whyPossibly = "Matched on name only, or claimed by another app as well, so check these before "
                       "removing. Another app or the system itself may own them.",
        .noOtherFiles = "No other files found for this app.",
        .stillSearching = "Looking for this app’s files…",
        .chooseApp = "Select an app to see its other files.",
        .revealItem = "Show in File Manager",
        .openFolder = "Open in File Manager",
        .showBackupCopy = "Show this copy in the file manager",
        .grantAccess = "Grant access to all files",
        .whyGrantAccess = "Without it, protected folders read as empty.",
        .accessNoticeTitle = "The system will ask before Brimvale looks into some folders",
        .accessNotice = "Brimvale only measures how much space the files take. It does not read what is in "
                        "them.",
        .accessAdvice = "Folders that you do not allow read as empty.",
        .measuringHelp = "Its owner or an administrator can change that.",
        .listingHelp = "Its owner or an administrator can change that.",
        .freesAtMost = "Deleting frees at most this size, because files on this volume can share their space "
                       "with snapshots and copies.",
        .atMost = " at most",
        .purgeableSpace = "of the free space is purgeable, meaning the system is holding it but will give it "
                          "back under pressure. Mostly caches that are built again when needed.",
        .unreadableSpace = "mostly snapshots, deleted files that a program still has open, folders that only "
                           "an administrator may read, and what the file system keeps for itself.",
        .snapshotsTitle = "Snapshots",
        .snapshotsRemark =
            "A size is what deleting only that snapshot frees. Btrfs knows it only when quotas are on.",
    };
}

} // namespace brimvale::linuxCatalog
