#pragma once

#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// Opens a folder by one component of its path after the other, starting at "/". So it knows every ancestor
/// by its real path, whatever links it follows, and takes paths of any length. Links of other users, except
/// the administrator, are refused like too many links (ELOOP).
class FolderRoute {
public:
    /// Goes to the folder at this absolute path. 0, or the errno of the failure.
    [[nodiscard]] int go(std::string_view path);

    /// The path of the folder, without links.
    [[nodiscard]] const std::string &path() const { return path_; }
    [[nodiscard]] const Folder &folder() const { return folder_; }

    /// The folder and its ancestors, from "/" down; afterwards the route is empty.
    [[nodiscard]] Folder takeFolder() { return std::move(folder_); }
    [[nodiscard]] std::vector<FileIdentity> takeAncestors() { return std::move(ancestors_); }

private:
    int startAtTop();
    int enter(const std::string &name);
    int leave();
    int follow(const std::string &name, int error);
    void addToDo(std::string_view path);

    int linksFollowed_ = 0;
    std::vector<std::string> toDo_; ///< the components still to go, the next one last
    std::string path_;
    Folder folder_;
    std::vector<FileIdentity> ancestors_;
};

} // namespace brimvale
