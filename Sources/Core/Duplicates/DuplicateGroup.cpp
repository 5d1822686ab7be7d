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

/// By the names that folders for the Trash have on all systems.
bool isInTrash(std::string_view path) {
    constexpr std::array<std::string_view, 4> names = {"/.Trash/", "/.Trashes/", "/.Trash-",
                                                       "/.local/share/Trash/"};
    return std::any_of(names.begin(), names.end(),
                       [&](std::string_view name) { return path.find(name) != std::string_view::npos; });
}

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

StayingRule::StayingRule() {
    const FileURL home = homeFolder();
    const auto folders = userDirectories(home).byKey;
    const auto downloads = folders.find("XDG_DOWNLOAD_DIR");
    const bool isSet = downloads != folders.end() && downloads->second;
    downloads_ = isSet ? downloads->second->path() : home.appending("Downloads").path();
}

std::string StayingRule::inWords() {
    return "One file of each group stays: first one that can’t go, then one outside Downloads and the Trash, "
           "then the oldest, then the one with the shortest path, then the first by name.";
}

/// Whether the file is where files often are only for a while.
bool StayingRule::isOnlyForAWhile(const FileURL &file) const {
    return isAtOrUnder(file.path(), downloads_) || isInTrash(file.path());
}

void StayingRule::sort(std::vector<DuplicateFile> &files) const {
    const auto rank = [&](const DuplicateFile &file) {
        return std::tuple(file.keptBecause.empty(), isOnlyForAWhile(file.url), file.record.modified,
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
