#include "Core/Duplicates/DuplicateGroup.h"

#include "Base/Bytes.h"
#include "Platform/Host.h"
#include "Platform/UserDirectories.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace brimvale {

namespace {

/// The folders in which files often are only for a while.
class PassingPlaces {
public:
    PassingPlaces() {
        const FileURL home = homeFolder();
        const auto &folders = userDirectories(home).byKey;
        const auto downloads = folders.find("XDG_DOWNLOAD_DIR");
        if (downloads != folders.end() && downloads->second)
            downloads_ = downloads->second->path();
        else
            downloads_ = home.appending("Downloads").path();
    }

    [[nodiscard]] bool contain(const FileURL &file) const {
        return isAtOrUnder(file.path(), downloads_) || isInTrash(file.path());
    }

private:
    /// The names that folders for the Trash have on all systems.
    static bool isInTrash(std::string_view path) {
        constexpr std::array<std::string_view, 4> names = {"/.Trash/", "/.Trashes/", "/.Trash-",
                                                           "/.local/share/Trash/"};
        return std::any_of(names.begin(), names.end(),
                           [&](std::string_view name) { return path.find(name) != std::string_view::npos; });
    }

    std::string downloads_;
};

} // namespace

std::int64_t DuplicateGroup::removableBytes(std::size_t staying) const {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < files.size(); ++i)
        if (mayGo(i, staying))
            sum = checkedAdd(sum, files[i].size);
    return sum;
}

std::int64_t DuplicatesFound::removableBytes() const {
    std::int64_t sum = 0;
    for (const DuplicateGroup &group : groups)
        sum = checkedAdd(sum, group.removableBytes());
    return sum;
}

std::string ruleOfStaying() {
    return "One file of each group stays: first one that can’t go, then one outside Downloads and the Trash, "
           "then the oldest, then the one with the shortest path, then the first by name.";
}

void sortByRule(std::vector<DuplicateFile> &files) {
    const PassingPlaces passing;
    const auto rank = [&](const DuplicateFile &file) {
        return std::tuple(file.keptBecause.empty(), passing.contain(file.url), file.record.modified,
                          file.url.path().size(), std::string_view(file.url.path()));
    };
    std::sort(files.begin(), files.end(),
              [&](const DuplicateFile &a, const DuplicateFile &b) { return rank(a) < rank(b); });
}

void sortByFreedBytes(std::vector<DuplicateGroup> &groups) {
    std::sort(groups.begin(), groups.end(), [](const DuplicateGroup &a, const DuplicateGroup &b) {
        const std::int64_t freedByA = a.removableBytes();
        const std::int64_t freedByB = b.removableBytes();
        return std::tuple(-freedByA, -a.length, std::string_view(a.files.front().url.path())) <
               std::tuple(-freedByB, -b.length, std::string_view(b.files.front().url.path()));
    });
}

} // namespace brimvale
