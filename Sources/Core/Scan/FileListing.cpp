#include "Core/Scan/FileListing.h"

#include "Base/FileURL.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <utility>

namespace brimvale {

namespace {

/// Entries of one folder between two looks at the cancellation.
constexpr std::size_t entriesPerQuestion = 256;

std::string inside(const std::string &folder, std::string_view name) {
    return folder.empty() ? std::string(name) : joinPath(folder, name);
}

class Lister {
public:
    Lister(const std::string &root, const StopFlag &cancelled) : root_(root), cancelled_(cancelled) {}

    void add(std::string relative, const EntryRecord &record) {
        if (record.kind == EntryKind::folder)
            folders_.push_back(relative);
        listing_.entries.push_back({std::move(relative), record});
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
        std::size_t count = 0;
        while (folder.isOpen() && (name = folder.nextName()) != nullptr) {
            if (const std::optional<EntryRecord> record = entryRecord(folder, name))
                add(inside(relative, name), *record);
            else
                listing_.unreadable.push_back(inside(relative, name));
            if (++count % entriesPerQuestion == 0 && cancelled_.isSet())
                return false;
        }
        if (!folder.isOpen() || errno != 0)
            listing_.unreadable.push_back(relative);
        return true;
    }

    FileListing take() {
        std::sort(listing_.entries.begin(), listing_.entries.end(),
                  [](const ListedEntry &a, const ListedEntry &b) { return a.path < b.path; });
        return std::move(listing_);
    }

private:
    const std::string &root_;
    const StopFlag &cancelled_;
    std::vector<std::string> folders_;
    FileListing listing_;
};

} // namespace

const ListedEntry *FileListing::find(const std::string &path) const {
    const auto found =
        std::lower_bound(entries.begin(), entries.end(), path,
                         [](const ListedEntry &entry, const std::string &name) { return entry.path < name; });
    return found != entries.end() && found->path == path ? &*found : nullptr;
}

FileListing listFiles(const std::string &path, const StopFlag &cancelled) {
    Lister lister(path, cancelled);
    if (const std::optional<EntryRecord> record = entryRecord(path))
        lister.add("", *record);
    while (!cancelled.isSet() && lister.step()) {
    }
    return lister.take();
}

} // namespace brimvale
