#pragma once

#include "Base/FileURL.h"
#include "Catalogs/GuardedPaths.h"
#include "Platform/Host.h"
#include "Platform/OpenedItem.h"
#include "Platform/PlacesInUse.h"
#include "Platform/PutBack.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace brimvale {

/// Every removal is checked here first. Structural and system paths are always refused, and so are those of
/// the home folders of all people who use this machine. Immutable, and made for one host: the homes are read
/// once, when the guards are made.
///
/// An item is checked twice. First its usual path, as text, byte by byte; but a guarded folder is
/// guarded in every spelling that the file system accepts for it ("~/documents" where case does not matter).
/// Then its place on the disk: whatever links and bind mounts the path leads through, the item and its
/// ancestors are compared with the guarded folders themselves.
class RemovalGuards {
public:
    explicit RemovalGuards(const Host &host);

    /// Nothing when the item may be removed; otherwise the reason, as one readable sentence. Asks the disk
    /// only to standardise the path, to see whether the item exists (a link that leads nowhere does not), and
    /// to compare a path spelled almost like a guarded folder with that folder. Never fails. Thread-safe.
    ///
    /// If the host's system is not the one the program was built for, the guards of both must allow the item;
    /// the reason of the host's system comes first.
    [[nodiscard]] std::optional<std::string> check(const FileURL &url) const;

    /// Whether items inside this folder may be removed, as far as the text of its path says. Reads nothing
    /// but what standardising the path needs.
    [[nodiscard]] bool admitsContents(const FileURL &folder) const;

    struct GuardedFolder {
        std::string path;
        std::string realPath = {}; ///< where the path is a link to the folder
    };

    /// The guarded folders of a system by what they are on the disk.
    using Places = std::unordered_multimap<FileIdentity, GuardedFolder>;

    /// Where the guarded folders are at present. Homes of other accounts on network volumes are left out,
    /// because a server that is gone would stop every removal; they are guarded by their paths.
    struct Located {
        Places inForce;
        Places platform;
        UsedPlaces used; ///< what the system or this program needs at present
    };
    [[nodiscard]] Located locate() const;

    /// The same for the place of an item, after its path was checked. Reads nothing.
    [[nodiscard]] std::optional<std::string> check(const OpenedItem &item, const Located &guarded) const;

    /// Whether something may be put back at this place: its folder is not protected.
    [[nodiscard]] bool admits(const PlaceToPutBack &place, const Located &guarded) const;

    /// The same for another absolute path of an item that was opened.
    [[nodiscard]] std::optional<std::string> checkOtherPath(const std::string &path, bool isFolder) const;

private:
    /// The guards of one system.
    class SystemGuards {
    public:
        explicit SystemGuards(const Host &host);
        /// Why an item at a path stays. Some stay only if they are folders.
        [[nodiscard]] std::optional<std::string> refusal(const std::string &given,
                                                         bool isFolder = false) const;
        [[nodiscard]] Places locate() const;
        [[nodiscard]] std::optional<std::string> refusal(const OpenedItem &item, const Places &places) const;
        [[nodiscard]] std::optional<std::string> refusal(const std::string &path, bool isFolder,
                                                         const std::vector<FileIdentity> &folders,
                                                         const Places &places) const;

    private:
        void addPathsOf(const FileURL &home, System system);
        void addPlacesOf(const GuardedPaths &paths);
        void addPrefix(const std::string &prefix);
        void addSpelling(const std::string &folder);
        void addUserDirectories(const FileURL &home);
        void addWithAncestors(FileURL folder);
        void addHomesOfOthers(System system);
        [[nodiscard]] std::string asGuarded(const std::string &path) const;
        [[nodiscard]] std::optional<std::string> spelledAsGuarded(const std::string &path,
                                                                  std::string_view folded) const;
        [[nodiscard]] const std::string *reasonOfTree(const std::string &path) const;
        [[nodiscard]] const std::string *reasonOfParent(const std::string &path, bool isFolder) const;

        /// Looks up parts of a path without copying them.
        struct TextHash {
            using is_transparent = void;
            std::size_t operator()(std::string_view text) const {
                return std::hash<std::string_view>()(text);
            }
        };
        using Texts = std::unordered_set<std::string, TextHash, std::equal_to<>>;
        template<class Value>
        using ByText = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

        std::unordered_set<std::string> structural_;
        std::unordered_set<std::string> ofOthers_; ///< those only because of the homes of other accounts
        ByText<std::string> protectedPrefixes_; ///< the folder of each, with /private where that was left out
        Texts openPrefixes_;
        ByText<std::string> trees_; ///< the predicate of each prefix
        ByText<std::string> foldersOfEntries_, foldersOfFolders_, structuralNames_; ///< predicates, too
        std::vector<GuardedPlace> namesOfTrees_;     ///< each between two slashes
        ByText<std::vector<std::string>> spellings_; ///< guarded folders by their case-folded paths
    };

    System system_;
    std::string root_; ///< where to look for what is in use, besides "/"
    SystemGuards inForce_;
    std::optional<SystemGuards> platform_; ///< where it differs
};

} // namespace brimvale
