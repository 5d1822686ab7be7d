#include "Core/Storage/CategoryPolicies.h"

#include "Catalogs/Catalog.h"
#include "Core/Storage/StorageCategories.h"

#include <variant>

namespace brimvale {

namespace {

std::optional<CategoryPolicy> policyOf(const StorageCategory &category) {
    if (const auto *readOnly = std::get_if<ReadOnlyAction>(&category.action))
        return CategoryPolicy{category.id, category.title, readOnly->reason};
    if (const auto *backup = std::get_if<BackupThenRemoveAction>(&category.action))
        return CategoryPolicy{category.id, category.title, backup->warning, true};
    return std::nullopt;
}

} // namespace

CategoryPolicies::CategoryPolicies(const Host &host) {
    for (const StorageCategory &category : StorageCategories::all(host))
        for (const std::vector<std::string> *places : {&category.roots, &category.alsoCovers})
            for (const std::string &place : *places)
                add(place, policyOf(category));
    for (const std::string &folder : catalogOf(host.system).administratorsFolders)
        add(host.placeOf(folder), std::nullopt);
}

/// What is added later counts where two are the same folder.
void CategoryPolicies::add(const std::string &folder, const std::optional<CategoryPolicy> &policy) {
    const FileURL url = FileURL(folder).standardized();
    paths_[url] = policies_.size();
    if (const std::optional<FileIdentity> identity = folderIdentity(url.path()))
        places_[*identity] = policies_.size();
    if (policy && !policy->backsUpFirst)
        if (const Result<OpenedItem, int> found = OpenedItem::at(url);
            const auto *opened = std::get_if<OpenedItem>(&found))
            for (const FileIdentity &ancestor : opened->ancestors())
                ancestors_.try_emplace(ancestor, policies_.size());
    policies_.push_back(policy);
}

/// The policy of the innermost place by the text of the path; null where there is none.
const std::optional<CategoryPolicy> *CategoryPolicies::byPath(const FileURL &item) const {
    for (FileURL folder = item;; folder = folder.parent()) {
        if (const auto found = paths_.find(folder); found != paths_.end())
            return &policies_[found->second];
        if (folder.path() == "/")
            return nullptr;
    }
}

/// The same by what the folders on the way are on the disk.
const std::optional<CategoryPolicy> *CategoryPolicies::byPlace(const FileURL &item) const {
    const Result<OpenedItem, int> found = OpenedItem::at(item);
    const auto *opened = std::get_if<OpenedItem>(&found);
    return opened != nullptr ? byPlace(*opened) : nullptr;
}

const std::optional<CategoryPolicy> *CategoryPolicies::byPlace(const OpenedItem &item) const {
    std::vector<FileIdentity> folders = item.ancestors();
    if (item.isFolder())
        folders.push_back(item.identity().file);
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder)
        if (const auto place = places_.find(*folder); place != places_.end())
            return &policies_[place->second];
    return nullptr;
}

/// The policy of a read-only place inside the folder.
std::optional<CategoryPolicy> CategoryPolicies::ofContents(const FileURL &item) const {
    const std::optional<FileStatus> status = fileStatus(item.path());
    const auto found = status ? ancestors_.find(status->identity) : ancestors_.end();
    return found != ancestors_.end() ? policies_[found->second] : std::nullopt;
}

std::optional<CategoryPolicy> CategoryPolicies::ofFile(const OpenedItem &file) const {
    const std::optional<CategoryPolicy> *policy = byPlace(file);
    if (policy == nullptr)
        policy = byPath(file.place());
    return policy != nullptr ? *policy : std::nullopt;
}

std::optional<CategoryPolicy> CategoryPolicies::of(const FileURL &item) const {
    const FileURL standardized = item.standardized();
    // By its place first, because a path may lead through a link into a category.
    const std::optional<CategoryPolicy> *policy = byPlace(standardized);
    if (policy == nullptr)
        policy = byPath(standardized);
    return policy != nullptr && *policy ? *policy : ofContents(standardized);
}

} // namespace brimvale
