#pragma once

#include "Platform/FileStatus.h"
#include "Platform/Host.h"
#include "Platform/UserDirectories.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace brimvale::linuxCatalog {

/// Finds out where the places of a catalog are on this machine. A place is an absolute path; "~/…";
/// "$DATA/…", "$CONFIG/…", "$CACHE/…" or "$STATE/…" in the base directories of the desktop; "$XDG_MUSIC_DIR"
/// and the like, a folder that the user's settings name; or "$GOPATH/…" and the like, a folder that another
/// variable of the environment names. Components may be "*", any entry.
class Places {
public:
    /// Reads the user's settings. The environment counts only for the home of the user who runs the program.
    explicit Places(const Host &host);

    /// The paths of a place, whether or not they exist. What "*" stands for is listed, in order of names.
    [[nodiscard]] std::vector<std::string> pathsOf(std::string_view place) const;

    /// The same up to the first "*", so nothing is listed.
    [[nodiscard]] std::vector<std::string> foldersOf(std::string_view place) const;

    /// The paths of these places that exist, each once, whatever its path. Links in the home lead to the
    /// real folder, other links are left out: the system's folders have such second names. A path that was
    /// taken before is left out, and so are the home and its ancestors.
    [[nodiscard]] std::vector<std::string> take(const std::vector<std::string> &places);

    /// Where a path is on the disk of the host; "~" is the home. One in its root or in the home is there
    /// already.
    [[nodiscard]] std::string placed(const std::string &path) const;

    [[nodiscard]] const Host &host() const { return host_; }

private:
    [[nodiscard]] std::vector<std::string> startsOf(std::string_view variable) const;
    [[nodiscard]] std::vector<std::string> writtenPathsOf(std::string_view place) const;
    static void addListed(const std::string &folder, const std::string &rest,
                          std::vector<std::string> &paths);
    [[nodiscard]] std::vector<std::string> userFolder(std::string_view variable) const;
    [[nodiscard]] bool mayBeLink(const std::string &path) const;
    [[nodiscard]] std::string realPath(const std::string &path) const;

    Host host_;
    UserDirectories userFolders_;
    std::map<std::string, std::vector<std::string>, std::less<>> baseFolders_;
    std::unordered_set<FileIdentity> taken_;
};

} // namespace brimvale::linuxCatalog
