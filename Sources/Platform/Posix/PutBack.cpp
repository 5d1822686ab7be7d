#include "Platform/PutBack.h"

#include "Platform/FolderTrash.h"
#include "Platform/Posix/Descriptor.h"
#include "Platform/Posix/OpenFile.h"
#include "Platform/Posix/OwnTrash.h"
#include "Platform/Posix/SafeMove.h"
#include "Platform/TrashContents.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

/// Makes folders inside each other, and removes them again unless they are kept.
class MadeFolders {
public:
    explicit MadeFolders(int first) : first_(first) {}
    MadeFolders(const MadeFolders &) = delete;
    MadeFolders &operator=(const MadeFolders &) = delete;

    ~MadeFolders() {
        for (; !made_.empty(); made_.pop_back())
            unlinkat(made_.size() == 1 ? first_ : made_[made_.size() - 2].folder.number(),
                     made_.back().name.c_str(), AT_REMOVEDIR);
    }

    /// 0, or the errno.
    int make(const std::vector<std::string> &names) {
        constexpr mode_t usual = 0777; // less what the umask withholds
        for (const std::string &name : names) {
            const int parent = innermost();
            if (mkdirat(parent, name.c_str(), usual) != 0)
                return errno == EEXIST ? EAGAIN : errno;
            made_.push_back({name, {}});
            Descriptor folder(openat(parent, name.c_str(), passThroughFlags() | O_NOFOLLOW));
            if (!folder.isOpen())
                return errno == ENOENT || errno == ENOTDIR || errno == ELOOP ? EAGAIN : errno;
            made_.back().folder = std::move(folder);
        }
        return 0;
    }

    [[nodiscard]] int innermost() const { return made_.empty() ? first_ : made_.back().folder.number(); }

    void keep() { made_.clear(); }

private:
    struct Made {
        std::string name;
        Descriptor folder;
    };
    int first_;
    std::vector<Made> made_;
};

} // namespace

Result<FileURL, int> putBack(const OpenedItem &item, const PlaceToPutBack &place) {
    if (!isOwnTrash(item.folder()) && !isFolderTrash(item.folder()))
        return EINVAL;
    MadeFolders folders(place.folder().descriptor());
    if (const int error = folders.make(place.missing()); error != 0)
        return error;
    const std::string name(place.path().fileName());
    if (const int error = moveUnlessThere(item, folders.innermost(), name); error != 0)
        return error;
    const std::string folder = pathOf(folders.innermost());
    folders.keep();
    forgetTrashed(item.place());
    return folder.empty() ? place.path() : FileURL(joinPath(folder, name));
}

} // namespace brimvale
