#include "Core/Scan/FileListing.h"

#include "Base/FileURL.h"
#include "Platform/FileReader.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace brimvale {

namespace {

std::string inside(const std::string &folder, std::string_view name) {
    return folder.empty() ? std::string(name) : joinPath(folder, name);
}

class Lister {
public:
    explicit Lister(const std::string &root) : root_(root) {}

    void add(const std::string &relative, FileKind kind) {
        if (kind == FileKind::directory)
            folders_.push_back(relative);
        else if (kind == FileKind::regularFile)
            listing_.files.push_back({relative, false});
        else if (linkTarget(relative.empty() ? root_ : joinPath(root_, relative)))
            listing_.files.push_back({relative, true});
    }

    /// Lists the next waiting folder; false when none is left.
    bool step() {
        if (folders_.empty())
            return false;
        const std::string relative = std::move(folders_.back());
        folders_.pop_back();
        Folder folder =
            Folder::at(relative.empty() ? root_ : joinPath(root_, relative), Folder::Links::refuse);
        const char *name = nullptr;
        while (folder.isOpen() && (name = folder.nextName()) != nullptr)
            if (const std::optional<FileStatus> status = folder.statusOfEntry(name))
                add(inside(relative, name), status->kind);
            else
                listing_.unreadable.push_back(inside(relative, name));
        if (!folder.isOpen() || errno != 0)
            listing_.unreadable.push_back(relative);
        return true;
    }

    FileListing take() {
        std::sort(listing_.files.begin(), listing_.files.end(),
                  [](const ListedFile &a, const ListedFile &b) { return a.path < b.path; });
        return std::move(listing_);
    }

private:
    const std::string &root_;
    std::vector<std::string> folders_;
    FileListing listing_;
};

} // namespace

FileListing listFiles(const std::string &path, const StopFlag &cancelled) {
    Lister lister(path);
    if (const std::optional<FileStatus> status = fileStatus(path))
        lister.add("", status->kind);
    while (!cancelled.isSet() && lister.step()) {
    }
    return lister.take();
}

} // namespace brimvale
