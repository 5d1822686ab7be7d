#include "Core/Scan/NestedItems.h"

#include "Base/FileURL.h"
#include "Core/Scan/PlaceOfWalk.h"
#include "Core/Scan/UsualPath.h"

#include <algorithm>

namespace brimvale {

namespace {

/// The parent of a standardised path; nothing for "/".
std::optional<std::string_view> folderOf(std::string_view path) {
    if (path == "/")
        return std::nullopt;
    const std::size_t slash = path.rfind('/');
    return path.substr(0, std::max<std::size_t>(slash, 1));
}

} // namespace

NestedItem &NestedItems::add(const std::string &path, std::size_t group, bool isTimeLeft) {
    NestedItem *&known = byPath_[path];
    if (known == nullptr) {
        auto item = std::make_unique<NestedItem>();
        item->path = path;
        const bool isSeen = isTimeLeft && !skipped_.unseen(path);
        const std::optional<FileStatus> status = isSeen ? fileStatus(path) : std::nullopt;
        if (status)
            item->measured = {.modified = status->modified, .isFolder = status->kind == FileKind::directory};
        if (item->measured.isFolder) {
            item->path = placeOfWalk(path);
            if (!skipped_.contains(usualPath(FileURL(path)).path()) && !status->isDataless)
                item->folder = status->identity;
        } else if (status) {
            item->measured.bytes = status->allocatedBytes;
        }
        // The folder may already be there with another spelling.
        const auto same = item->folder ? byPath_.find(item->path) : byPath_.end();
        if (same != byPath_.end() && same->second != nullptr) {
            known = same->second;
        } else {
            known = items_.emplace_back(std::move(item)).get();
        }
    }
    NestedItem &item = *known;
    if (item.folder)
        byPath_[item.path] = &item;
    item.groups.push_back(group);
    return item;
}

void NestedItems::nest() {
    std::vector<NestedItem *> outerFirst;
    for (const std::unique_ptr<NestedItem> &item : items_)
        if (item->folder)
            outerFirst.push_back(item.get());
    std::stable_sort(outerFirst.begin(), outerFirst.end(), [](const NestedItem *a, const NestedItem *b) {
        return a->path.size() < b->path.size();
    });
    for (NestedItem *item : outerFirst) {
        NestedItem *outer = outerItemOf(*item);
        if (outer == nullptr || !findAncestors(*item, *outer))
            continue;
        item->outer = outer;
        innerNames_.insert(std::string_view(item->path).substr(item->path.rfind('/') + 1));
    }
    statuses_.clear();
}

NestedItem *NestedItems::inner(const std::string &folderPath, std::string_view name) const {
    if (!innerNames_.contains(name))
        return nullptr;
    const std::string path = joinPath(folderPath, name);
    const auto found = byPath_.find(path);
    const bool isInner =
        found != byPath_.end() && found->second->path == path && found->second->outer != nullptr;
    return isInner ? found->second : nullptr;
}

NestedItem *NestedItems::outerItemOf(const NestedItem &item) const {
    for (auto folder = folderOf(item.path); folder; folder = folderOf(*folder)) {
        const auto found = byPath_.find(std::string(*folder));
        if (found != byPath_.end() && found->second->folder && found->second->path == *folder)
            return found->second;
    }
    return nullptr;
}

/// Collects the ancestors of `item`. False where no walk of `outer` reaches it.
bool NestedItems::findAncestors(NestedItem &item, const NestedItem &outer) {
    if (item.folder->device != outer.folder->device)
        return false;
    std::vector<FileIdentity> between;
    for (auto folder = folderOf(item.path); folder && *folder != outer.path; folder = folderOf(*folder)) {
        const std::optional<FileStatus> status = statusOf(std::string(*folder));
        if (!status || status->kind != FileKind::directory || status->identity.device != outer.folder->device)
            return false;
        between.push_back(status->identity);
    }
    item.ancestors = outer.ancestors;
    item.ancestors.push_back(*outer.folder);
    item.ancestors.insert(item.ancestors.end(), between.rbegin(), between.rend());
    return true;
}

std::optional<FileStatus> NestedItems::statusOf(const std::string &folder) {
    const auto [known, isNew] = statuses_.try_emplace(folder);
    if (isNew)
        known->second = fileStatus(folder);
    return known->second;
}

} // namespace brimvale
