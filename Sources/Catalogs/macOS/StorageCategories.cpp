#include "Catalogs/macOS/Catalog.h"

#include <utility>

namespace brimvale::macOSCatalog {

std::vector<StorageCategory> storageCategories(const Host &host, std::vector<std::string> others) {
    std::vector<StorageCategory> categories = {
        {.id = "applications",
         .title = "Applications",
         .symbol = "app.badge",
         .colorName = "blue",
         .detail = "Installed apps and the data they leave outside their own bundle.",
         .roots = {"/Applications", "~/Applications"},
         .listsContents = true,
         .risk = CleanupRisk::review,
         .action = ApplicationsAction{}},
        {.id = "documents",
         .title = "Documents",
         .symbol = "doc",
         .colorName = "orange",
         .detail = "Your Documents, Desktop and Downloads folders.",
         .roots = {"~/Documents", "~/Desktop", "~/Downloads"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = RemovableAction{},
         .caveat = "This is your own work. Nothing here comes back on its own."},
        {.id = "photos",
         .title = "Photos",
         .symbol = "photo",
         .colorName = "pink",
         .detail = "Photo libraries and everything else under Pictures.",
         .roots = {"~/Pictures"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = ReadOnlyAction{"A photo library is a bundle with its own database. Removing pieces of it "
                                  "from the outside corrupts the library, so manage its contents from Photos "
                                  "and empty its Recently Deleted album."}},
        {.id = "messages",
         .title = "Messages",
         .symbol = "message",
         .colorName = "green",
         .detail = "The Messages database and its attachments.",
         .roots = {"~/Library/Messages"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action =
             BackupThenRemoveAction{
                 "com.apple.MobileSMS",
                 "Messages keeps an index that has to stay in step with the attachments on disk, so removing "
                 "part of this folder can break the rest of it. Brimvale will copy what you selected "
                 "somewhere safe and confirm the copy before deleting anything.",
                 "Messages"}},
        {.id = "mail",
         .title = "Mail",
         .symbol = "envelope",
         .colorName = "indigo",
         .detail = "Locally cached mailboxes and downloaded attachments.",
         .roots = {"~/Library/Mail", "~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = RemovableAction{},
         .caveat = "For IMAP accounts this is a local copy and the server still has it. For POP accounts it "
                   "is the only copy."},
        {.id = "music",
         .title = "Music",
         .symbol = "music.note",
         .colorName = "red",
         .detail = "The Music library, downloads and anything else under Music.",
         .roots = {"~/Music"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = RemovableAction{},
         .caveat =
             "Purchased and Apple Music downloads redownload. Anything you imported yourself does not."},
        {.id = "cloud",
         .title = "Cloud Drives",
         .symbol = "icloud",
         .colorName = "cyan",
         .detail = "What iCloud Drive, Google Drive and OneDrive keep on this Mac.",
         .roots = {"~/Library/Application Support/CloudDocs", "~/Library/Application Support/Google/DriveFS",
                   "~/Library/Application Support/OneDrive", "~/Library/Caches/CloudKit",
                   "~/Library/Group Containers/group.com.apple.CoreSpeech"},
         .risk = CleanupRisk::review,
         .action = RemovableAction{},
         .caveat = "This is the local cache only, not the size of your cloud drives. The synced folders "
                   "themselves are deliberately not walked: asking a provider how big its tree is makes it "
                   "download the tree."},
        {.id = "developer",
         .title = "Developer",
         .symbol = "hammer",
         .colorName = "purple",
         .detail = "Xcode, simulators, package manager caches and container images.",
         .roots = {"~/Library/Developer", "/Library/Developer", "~/.gradle", "~/.android", "~/.npm",
                   "~/.cache", "~/.cargo", "~/.m2", "~/.docker", "~/go/pkg", "~/Library/Caches/Homebrew"},
         .listsContents = true,
         .risk = CleanupRisk::review,
         .action = RemovableAction{},
         .caveat = "Almost all of this rebuilds or redownloads. Cleanup has the same items grouped by how "
                   "safe they are."},
        {.id = "trash",
         .title = "Trash",
         .symbol = "trash",
         .colorName = "brown",
         .detail = "Already thrown away, still taking up the disk.",
         .roots = {"~/.Trash"},
         .listsContents = true,
         .risk = CleanupRisk::safe,
         .action = RemovableAction{}},
        {.id = "othersShared",
         .title = "Other Users & Shared",
         .symbol = "person.2",
         .colorName = "teal",
         .detail = "Home folders belonging to other accounts, plus the Shared folder.",
         .roots = std::move(others),
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = ReadOnlyAction{"This belongs to another account on this Mac. Removing it needs that "
                                  "user's consent and an administrator, so Brimvale will only measure it."}},
        {.id = "macos",
         .title = "macOS",
         .symbol = "laptopcomputer",
         .colorName = "gray",
         .detail = "The operating system itself.",
         .roots = {"/System", "/usr", "/bin", "/sbin", "/opt"},
         .risk = CleanupRisk::careful,
         .action =
             ReadOnlyAction{"macOS lives on a sealed, cryptographically signed volume. It cannot be "
                            "modified, by this app or any other, and none of it is recoverable space."}},
        {.id = "systemData",
         .title = "System Data",
         .symbol = "ellipsis.circle",
         .colorName = "yellow",
         .detail = "Everything the categories above do not account for.",
         .risk = CleanupRisk::review,
         .measurement = CategoryMeasurement::remainder,
         .action = RemovableAction{},
         .caveat = "System Data is not a folder, it is arithmetic: the volume's used space minus everything "
                   "that could be identified. The rows below are the things that usually make it large, "
                   "measured on this Mac."},
    };
    for (StorageCategory &category : categories)
        for (std::string &root : category.roots)
            root = host.placeOf(root);
    return categories;
}

} // namespace brimvale::macOSCatalog
