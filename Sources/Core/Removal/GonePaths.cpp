#include "Core/Removal/GonePaths.h"

#include "Core/Scan/UsualPath.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace brimvale {

namespace {

/// The slash comes before every other byte, so everything inside a folder follows it without a gap.
bool comesBefore(const FileURL &a, const FileURL &b) {
    const auto rank = [](char byte) { return byte == '/' ? 0 : static_cast<unsigned char>(byte) + 1; };
    return std::lexicographical_compare(a.path().begin(), a.path().end(), b.path().begin(), b.path().end(),
                                        [&](char one, char other) { return rank(one) < rank(other); });
}

/// The other paths of a folder: with links resolved, as displayed, and by its other name if it has two. None
/// if it does not exist.
std::vector<FileURL> otherPaths(const FileURL &folder) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(folder.path(), error);
    if (error)
        return {};
    const FileURL usual = usualPath(folder);
    std::vector<FileURL> paths = {folder.standardized(), FileURL(real.native()), usual};
    if (std::optional<std::string> other = pathOnJoinedVolume(usual.path()))
        paths.emplace_back(*std::move(other));
    return paths;
}

} // namespace

GonePaths::GonePaths(std::vector<FileURL> items) {
    std::sort(items.begin(), items.end(), comesBefore);
    for (FileURL &item : items)
        if (outermost_.empty() || !isAtOrUnder(item.path(), outermost_.back().path()))
            outermost_.push_back(std::move(item));
}

GonePaths GonePaths::throughLinks(const std::vector<FileURL> &items) {
    std::unordered_map<FileURL, std::vector<FileURL>> parents;
    std::vector<FileURL> all = items;
    for (const FileURL &item : items) {
        const FileURL parent = item.parent();
        const auto [known, isNew] = parents.try_emplace(parent);
        if (isNew)
            known->second = otherPaths(parent);
        for (const FileURL &folder : known->second)
            if (folder != parent)
                all.push_back(folder.appending(item.fileName()));
    }
    return GonePaths(std::move(all));
}

void GonePaths::add(const GonePaths &others) {
    std::vector<FileURL> all = std::move(outermost_);
    all.insert(all.end(), others.outermost_.begin(), others.outermost_.end());
    *this = GonePaths(std::move(all));
}

bool GonePaths::contains(const FileURL &item) const {
    const auto after = std::upper_bound(outermost_.begin(), outermost_.end(), item, comesBefore);
    return after != outermost_.begin() && isAtOrUnder(item.path(), std::prev(after)->path());
}

bool GonePaths::reachInto(const FileURL &folder) const {
    const auto after = std::upper_bound(outermost_.begin(), outermost_.end(), folder, comesBefore);
    return after != outermost_.end() && isAtOrUnder(after->path(), folder.path());
}

bool GonePaths::contains(const FileURL &item, const std::optional<ItemPin> &pin) const {
    return contains(item) || (pin && contains(pin->place));
}

bool GonePaths::touch(const FileURL &item, const std::optional<ItemPin> &pin) const {
    return contains(item, pin) || reachInto(item) || (pin && reachInto(pin->place));
}

} // namespace brimvale
