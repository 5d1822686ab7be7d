#include "Core/Removal/RemovalGuards.h"

#include "Base/Text.h"
#include "Catalogs/Catalog.h"
#include "Core/Scan/UsualPath.h"
#include "Platform/Accounts.h"
#include "Platform/Characters.h"
#include "Platform/FileAccess.h"
#include "Platform/FileStatus.h"
#include "Platform/Mounts.h"
#include "Platform/UserDirectories.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

namespace brimvale {

namespace {

/// A name that no list of guarded paths contains.
constexpr const char *unlistedName = "\x01";

/// The path of a folder without links.
std::optional<FileURL> realFolder(const FileURL &folder) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(folder.path(), error);
    return error ? std::nullopt : std::optional(FileURL(real.native()));
}

/// The home; and its path without links, because a scan of the whole disk finds it by both, also in the form
/// of the paths that are checked.
std::vector<FileURL> withRealPath(const FileURL &home) {
    std::vector<FileURL> paths{home};
    if (const std::optional<FileURL> real = realFolder(home))
        for (const FileURL &form : {*real, real->standardized()})
            if (std::find(paths.begin(), paths.end(), form) == paths.end())
                paths.push_back(form);
    return paths;
}

std::string sentence(const std::string &path, std::string_view predicate) {
    return displayText(path).append(predicate);
}

std::string tooCloseToTheTop(const std::string &path) {
    return sentence(path, " is too close to the volume root to remove safely.");
}

/// Whether the standardised path is directly below "/".
bool isAtTheTop(const std::string &path) {
    return path.rfind('/') == 0;
}

/// The first components of `path`, as many as `other` has.
std::string asDeepAs(const std::string &other, const std::string &path) {
    std::size_t end = 0;
    for (auto slashes = std::count(other.begin(), other.end(), '/'); slashes > 0 && end < path.size();
         --slashes)
        end = std::min(path.find('/', end + 1), path.size());
    return path.substr(0, end);
}

/// The path `folder` with `rest`, which is empty or begins with a slash.
std::string pathInside(const std::string &folder, const std::string &rest) {
    return folder != "/" ? folder + rest : rest.empty() ? "/" : rest;
}

/// Why an item that the system or this program needs stays, or one that contains such an item.
std::optional<std::string> refusalOfUsed(const OpenedItem &item, const UsedPlaces &used) {
    const UsedPlace *found = used.in(item);
    if (found == nullptr)
        return std::nullopt;
    std::string_view what, advice;
    switch (found->use) {
    case PlaceUse::swap:
        what = "an active swap file";
        advice = "Turn it off first.";
        break;
    case PlaceUse::diskImage:
        what = "a disk image that is in use";
        advice = "Eject it first.";
        break;
    case PlaceUse::program:
        what = "a part of Brimvale, which is running";
        break;
    case PlaceUse::volume:
        what = "a Btrfs subvolume that is mounted as a volume";
        advice = "Eject it first.";
        break;
    }
    const bool isItself = found->item == item.identity().file;
    std::string text = "“" + displayText(item.name()) + "” " + (isItself ? "is " : "contains ");
    text.append(what).append(isItself ? "" : ": " + displayText(found->path)).append(".");
    return advice.empty() ? text : text + " " + std::string(advice);
}

bool areTheSameItem(const std::string &a, const std::string &b) {
    const std::optional<FileStatus> one = fileStatus(a);
    const std::optional<FileStatus> other = fileStatus(b);
    return one && other && one->identity == other->identity;
}

} // namespace

RemovalGuards::SystemGuards::SystemGuards(const Host &host) {
    for (const FileURL &home : withRealPath(host.home)) {
        addPathsOf(home, host.system);
        addUserDirectories(home);
    }
    addHomesOfOthers(host.system);
    for (const std::string &folder : structural_)
        addSpelling(folder);
    for (const auto *prefixes : {&protectedPrefixes_, &trees_})
        for (const auto &[prefix, value] : *prefixes)
            addSpelling(prefix.substr(0, prefix.size() - 1));
}

void RemovalGuards::SystemGuards::addSpelling(const std::string &folder) {
    if (folder.size() > 1)
        spellings_[caseFolded(folder)].push_back(folder);
}

void RemovalGuards::SystemGuards::addHomesOfOthers(System system) {
    const std::unordered_set<std::string> before = structural_;
    const ByText<std::string> treesBefore = trees_;
    MountPoints mounts;
    for (const FileURL &account : accountHomes())
        for (const FileURL &home :
             mounts.mayBlock(account.path()) ? std::vector{account} : withRealPath(account))
            addPathsOf(home, system);
    std::copy_if(structural_.begin(), structural_.end(), std::inserter(ofOthers_, ofOthers_.end()),
                 [&](const std::string &folder) { return !before.contains(folder); });
    for (const auto &[tree, predicate] : trees_)
        if (!treesBefore.contains(tree))
            ofOthers_.insert(tree.substr(0, tree.size() - 1));
}

void RemovalGuards::SystemGuards::addPathsOf(const FileURL &home, System system) {
    const GuardedPaths paths = catalogOf(system).guardedPaths(home);
    structural_.insert(paths.structural.begin(), paths.structural.end());
    addWithAncestors(home); // removing an ancestor would remove the home
    openPrefixes_.insert(paths.openPrefixes.begin(), paths.openPrefixes.end());
    for (const std::string &prefix : paths.protectedPrefixes)
        addPrefix(prefix);
    addPlacesOf(paths);
}

/// Standardising may have dropped a leading /private, so both forms are checked.
void RemovalGuards::SystemGuards::addPrefix(const std::string &prefix) {
    constexpr std::string_view privateFolder = "/private";
    const std::string folder = prefix.substr(0, prefix.size() - 1);
    protectedPrefixes_.emplace(prefix, folder);
    if (prefix.starts_with("/private/"))
        protectedPrefixes_.emplace(prefix.substr(privateFolder.size()), folder);
}

void RemovalGuards::SystemGuards::addPlacesOf(const GuardedPaths &paths) {
    const auto add = [](const std::vector<GuardedPlace> &places, ByText<std::string> &known) {
        for (const GuardedPlace &one : places)
            known.emplace(one.place, one.predicate);
    };
    add(paths.trees, trees_);
    add(paths.foldersOfEntries, foldersOfEntries_);
    add(paths.foldersOfFolders, foldersOfFolders_);
    add(paths.structuralNames, structuralNames_);
    if (namesOfTrees_.empty()) // the same for every home
        for (const GuardedPlace &one : paths.namesOfTrees)
            namesOfTrees_.push_back({"/" + one.place + "/", one.predicate});
}

/// The user's own folders for documents and so on, which may be anywhere; and, where they or the usual
/// folders of the home are links, what contains the folders they lead to. Those of other accounts are not
/// read: they could name any folder of ours.
void RemovalGuards::SystemGuards::addUserDirectories(const FileURL &home) {
    for (const FileURL &folder : userDirectories(home).all)
        structural_.insert(folder.path());
    const std::vector<std::string> folders(structural_.begin(), structural_.end());
    for (const std::string &folder : folders) {
        std::error_code error;
        if (!isAtOrUnder(folder, home.path()) || !std::filesystem::is_symlink(folder, error))
            continue;
        if (const std::optional<FileURL> real = realFolder(FileURL(folder)))
            addWithAncestors(*real);
    }
}

/// The outermost ancestor is too close to the root to be removed anyway.
void RemovalGuards::SystemGuards::addWithAncestors(FileURL folder) {
    for (; !isAtTheTop(folder.path()); folder = folder.parent())
        structural_.insert(folder.path());
}

/// The path with its deepest guarded folder spelled as in the guards, if both spellings are the same folder
/// on this disk.
std::string RemovalGuards::SystemGuards::asGuarded(const std::string &path) const {
    const std::string folded = caseFolded(path);
    for (std::size_t end = folded.size(); end != 0 && end != std::string::npos;
         end = folded.rfind('/', end - 1))
        if (std::optional<std::string> spelled =
                spelledAsGuarded(path, std::string_view(folded).substr(0, end)))
            return *std::move(spelled);
    return path;
}

/// The path with another spelling of the guarded folder that has this case-folded path; nothing where it is
/// spelled like that already, or is another folder.
std::optional<std::string> RemovalGuards::SystemGuards::spelledAsGuarded(const std::string &path,
                                                                         std::string_view folded) const {
    const auto found = spellings_.find(folded);
    if (found == spellings_.end())
        return std::nullopt;
    for (const std::string &folder : found->second) {
        if (path.starts_with(folder))
            continue;
        const std::string spelled = asDeepAs(folder, path);
        if (areTheSameItem(spelled, folder))
            return folder + path.substr(spelled.size());
    }
    return std::nullopt;
}

/// Why a path in a protected tree stays; null for any other path.
const std::string *RemovalGuards::SystemGuards::reasonOfTree(const std::string &path) const {
    static const std::string ofSystem = " lives inside a protected system location.";
    const std::string_view text = path;
    bool isProtected = false, isOpen = false;
    for (std::size_t slash = 0; slash != std::string::npos; slash = path.find('/', slash + 1)) {
        const std::string_view prefix = text.substr(0, slash + 1);
        isProtected = isProtected || protectedPrefixes_.contains(prefix);
        isOpen = isOpen || openPrefixes_.contains(prefix);
    }
    if (isProtected && !isOpen)
        return &ofSystem;
    const std::string inside = path + "/";
    for (std::size_t slash = 0; slash != std::string::npos; slash = inside.find('/', slash + 1))
        if (const auto tree = trees_.find(std::string_view(inside).substr(0, slash + 1));
            tree != trees_.end())
            return &tree->second;
    for (const GuardedPlace &name : namesOfTrees_)
        if (inside.find(name.place) != std::string::npos)
            return &name.predicate;
    return nullptr;
}

/// Why an entry stays because of the folder that it is in, or because of its own name; otherwise null.
const std::string *RemovalGuards::SystemGuards::reasonOfParent(const std::string &path, bool isFolder) const {
    const std::size_t slash = path.rfind('/');
    const std::string_view text = path;
    if (const auto name = structuralNames_.find(text.substr(slash + 1)); name != structuralNames_.end())
        return &name->second;
    if (const auto folder = foldersOfEntries_.find(text.substr(0, slash)); folder != foldersOfEntries_.end())
        return &folder->second;
    const auto folder = foldersOfFolders_.find(text.substr(0, slash));
    return isFolder && folder != foldersOfFolders_.end() ? &folder->second : nullptr;
}

std::optional<std::string> RemovalGuards::SystemGuards::refusal(const std::string &given,
                                                                bool isFolder) const {
    const std::string path = asGuarded(given);
    if (structural_.contains(path))
        return sentence(given, " is a structural directory and is never removed.");
    if (const std::string *reason = reasonOfTree(path))
        return sentence(given, *reason);
    if (const std::string *reason = reasonOfParent(path, isFolder))
        return sentence(given, *reason);
    return std::nullopt;
}

RemovalGuards::Places RemovalGuards::SystemGuards::locate() const {
    Places places;
    MountPoints mounts;
    const auto add = [&](const std::string &folder) {
        if (ofOthers_.contains(folder) && mounts.mayBlock(folder))
            return;
        const std::optional<FileStatus> status = fileStatus(folder);
        if (status && status->kind == FileKind::directory) {
            places.emplace(status->identity, GuardedFolder{folder});
        } else if (const std::optional<FileIdentity> identity =
                       status ? folderIdentity(folder) : std::nullopt) {
            std::error_code error;
            places.emplace(*identity,
                           GuardedFolder{folder, std::filesystem::canonical(folder, error).native()});
        }
    };
    std::for_each(structural_.begin(), structural_.end(), add);
    for (const auto &[prefix, folder] : protectedPrefixes_)
        if (prefix.size() == folder.size() + 1) // not the form without /private
            add(folder);
    for (const auto &[prefix, predicate] : trees_)
        add(prefix.substr(0, prefix.size() - 1));
    return places;
}

std::optional<std::string> RemovalGuards::SystemGuards::refusal(const OpenedItem &item,
                                                                const Places &places) const {
    std::vector<FileIdentity> folders = item.ancestors();
    if (item.isFolder())
        folders.push_back(item.identity().file);
    return refusal(item.place().path(), item.isFolder(), folders, places);
}

/// `folders` are those at the beginnings of the path, from "/" down, as far as they exist.
std::optional<std::string> RemovalGuards::SystemGuards::refusal(const std::string &path, bool isFolder,
                                                                const std::vector<FileIdentity> &folders,
                                                                const Places &places) const {
    if (std::optional<std::string> reason = refusal(path, isFolder))
        return reason;
    // The same place by the path of each guarded folder that the item is, or is inside.
    std::size_t end = 0; // of the path of the folder
    for (const FileIdentity &folder : folders) {
        const std::string rest = path.substr(end);
        const auto [first, last] = places.equal_range(folder);
        for (auto found = first; found != last; ++found) {
            // Inside a link the real path counts: "/var/run", a link to "/run", is protected, "/run/media"
            // not.
            const GuardedFolder &guarded = found->second;
            const std::string &name =
                rest.empty() || guarded.realPath.empty() ? guarded.path : guarded.realPath;
            const std::string inGuarded = pathInside(name, rest);
            if (inGuarded == path)
                continue; // it was checked as text
            if (std::optional<std::string> reason = refusal(inGuarded, isFolder))
                return reason;
            if (isAtTheTop(inGuarded))
                return tooCloseToTheTop(inGuarded);
        }
        end = std::min(path.find('/', end + 1), path.size());
    }
    return std::nullopt;
}

RemovalGuards::RemovalGuards(const Host &host) : system_(host.system), root_(host.root), inForce_(host) {
    if (host.system != platformSystem())
        platform_.emplace(Host{platformSystem(), host.home, host.tools});
}

std::optional<std::string> RemovalGuards::check(const FileURL &url) const {
    const FileURL usual = usualPath(url, system_);
    const std::string &path = usual.path();
    if (path == "/")
        return "Refusing to operate on the volume root.";
    if (std::optional<std::string> refusal = inForce_.refusal(path))
        return refusal;
    if (isAtTheTop(path))
        return tooCloseToTheTop(path);
    if (!itemExists(path))
        return sentence(path, " no longer exists.");
    return platform_ ? platform_->refusal(path) : std::nullopt;
}

bool RemovalGuards::admitsContents(const FileURL &folder) const {
    const FileURL inside = folder.standardized().appending(unlistedName);
    return !isAtTheTop(inside.path()) && !inForce_.refusal(inside.path()) &&
           !(platform_ && platform_->refusal(inside.path()));
}

RemovalGuards::Located RemovalGuards::locate() const {
    return {inForce_.locate(), platform_ ? platform_->locate() : Places(), UsedPlaces(root_)};
}

std::optional<std::string> RemovalGuards::check(const OpenedItem &item, const Located &guarded) const {
    if (isAtTheTop(item.place().path()))
        return tooCloseToTheTop(item.place().path());
    if (std::optional<std::string> reason = inForce_.refusal(item, guarded.inForce))
        return reason;
    if (platform_)
        if (std::optional<std::string> reason = platform_->refusal(item, guarded.platform))
            return reason;
    return refusalOfUsed(item, guarded.used);
}

bool RemovalGuards::admits(const PlaceToPutBack &place, const Located &guarded) const {
    // Any name that no list contains: a guarded folder itself may be put back.
    const std::string inside = place.path().parent().appending(unlistedName).path();
    return !isAtTheTop(inside) && !inForce_.refusal(inside, false, place.ancestors(), guarded.inForce) &&
           !(platform_ && platform_->refusal(inside, false, place.ancestors(), guarded.platform));
}

std::optional<std::string> RemovalGuards::checkOtherPath(const std::string &path, bool isFolder) const {
    if (std::optional<std::string> reason = inForce_.refusal(path, isFolder))
        return reason;
    if (isAtTheTop(path))
        return tooCloseToTheTop(path);
    return platform_ ? platform_->refusal(path, isFolder) : std::nullopt;
}

} // namespace brimvale
