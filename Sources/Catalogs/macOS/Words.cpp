#include "Catalogs/macOS/Catalog.h"

namespace brimvale::macOSCatalog {

Words words() {
    return {
        .thisComputer = "this Mac",
        .theSystem = "macOS",
        .rootName = "Macintosh HD",
        .noBytes = "Zero KB",
        .includeSystemApps = "Include Apple apps",
        .whyDefinitely = "Matched on bundle identifier.",
        .whyPossibly = "Matched on name only, so check these before removing. Another app or macOS itself "
                       "may own them.",
        .noOtherFiles = "No files found outside the bundle.",
        .stillSearching = "Looking for this app’s files…",
        .chooseApp = "Select an app to see its files outside the bundle.",
        .revealItem = "Reveal in Finder",
        .openFolder = "Open in Finder",
        .showBackupCopy = "Show this copy in Finder",
        .grantAccess = "Grant Full Disk Access",
        .whyGrantAccess = "Without it, protected folders such as Mail and Messages read as empty. Opens the "
                          "privacy settings.",
        .accessNoticeTitle = "macOS will ask before Brimvale looks into some folders",
        .accessNotice = "For each protected folder, such as Desktop, Documents or the data of another app, "
                        "macOS asks whether Brimvale may look into it, and the scan waits for your answer. "
                        "Brimvale only measures how much space the files take. It does not read what is in "
                        "them.",
        .accessAdvice =
            "With Full Disk Access macOS does not ask. Without it, Mail, Messages and the folders "
            "that you do not allow read as empty.",
        .measuringHelp = "Full Disk Access would let this be measured.",
        .listingHelp = "Allow Full Disk Access, or ask the folder’s owner.",
        .freesAtMost = "Deleting frees at most this size, because files on this volume can share their space "
                       "with snapshots and copies.",
        .atMost = " at most",
        .purgeableSpace = "of the free space is purgeable, meaning macOS is holding it but will give it back "
                          "under pressure. Mostly Time Machine snapshots and evictable caches.",
        .unreadableSpace = "mostly Time Machine local snapshots, which count as purgeable rather than used, "
                           "plus system areas that need an administrator. Deleting snapshots from the "
                           "Overview page is usually what moves that number.",
        .snapshotsTitle = "Time Machine local snapshots",
        .snapshotsRemark = "macOS does not report a size per snapshot. Their combined weight shows up as "
                           "purgeable space above.",
    };
}

} // namespace brimvale::macOSCatalog
