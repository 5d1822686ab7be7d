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

    const auto addSpelling = [&](const std::string &folder) {
        if (folder.size() > 1)
            spellings_.emplace_back(caseFolded(folder), folder);
    };
    std::for_each(structural_.begin(), structural_.end(), addSpelling);
    for (const Prefix &prefix : protectedPrefixes_)
        for (const std::string &text : {prefix.protectedPrefix, prefix.withoutPrivate})
            addSpelling(text.substr(0, text.rfind('/')));
}

void RemovalGuards::SystemGuards::addHomesOfOthers(System system) {
    const std::unordered_set<std::string> before = structural_;
    MountPoints mounts;
    for (const FileURL &account : accountHomes())
        for (const FileURL &home :
             mounts.mayBlock(account.path()) ? std::vector{account} : withRealPath(account))
            addPathsOf(home, system);
    std::copy_if(structural_.begin(), structural_.end(), std::inserter(ofOthers_, ofOthers_.end()),
                 [&](const std::string &folder) { return !before.contains(folder); });
}

void RemovalGuards::SystemGuards::addPathsOf(const FileURL &home, System system) {
    GuardedPaths paths = catalogOf(system).guardedPaths(home);
    structural_.insert(paths.structural.begin(), paths.structural.end());
    addWithAncestors(home); // removing an ancestor would remove the home
    for (std::string &prefix : paths.openPrefixes)
        if (std::find(openPrefixes_.begin(), openPrefixes_.end(), prefix) == openPrefixes_.end())
            openPrefixes_.push_back(std::move(prefix));

    // Standardising may have dropped a leading /private, so both forms are checked.
    constexpr std::string_view privateFolder = "/private";
    for (std::string &prefix : paths.protectedPrefixes) {
        const auto isKnown = [&](const Prefix &other) { return other.protectedPrefix == prefix; };
        if (std::any_of(protectedPrefixes_.begin(), protectedPrefixes_.end(), isKnown))
            continue;
        std::string without = prefix.starts_with("/private/") ? prefix.substr(privateFolder.size()) : "";
        protectedPrefixes_.push_back({std::move(prefix), std::move(without)});
    }
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
    std::string result = path;
    std::size_t deepest = 0;
    for (const auto &[foldedFolder, folder] : spellings_) {
        if (!isAtOrUnder(folded, foldedFolder) || foldedFolder.size() <= deepest || path.starts_with(folder))
            continue;
        const std::string spelled = asDeepAs(folder, path);
        if (!areTheSameItem(spelled, folder))
            continue;
        deepest = foldedFolder.size();
        result = folder + path.substr(spelled.size());
    }
    return result;
}

std::optional<std::string> RemovalGuards::SystemGuards::refusal(const std::string &given) const {
    const std::string path = asGuarded(given);
    if (structural_.contains(path))
        return sentence(given, " is a structural directory and is never removed.");
    const bool isProtected =
        std::any_of(protectedPrefixes_.begin(), protectedPrefixes_.end(), [&](const Prefix &prefix) {
            return path.starts_with(prefix.protectedPrefix) ||
                   (!prefix.withoutPrivate.empty() && path.starts_with(prefix.withoutPrivate));
        });
    const bool isOpen = std::any_of(openPrefixes_.begin(), openPrefixes_.end(),
                                    [&](const std::string &prefix) { return path.starts_with(prefix); });
    if (isProtected && !isOpen)
        return sentence(given, " lives inside a protected system location.");
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
    for (const Prefix &prefix : protectedPrefixes_)
        add(prefix.protectedPrefix.substr(0, prefix.protectedPrefix.size() - 1));
    return places;
}

std::optional<std::string> RemovalGuards::SystemGuards::refusal(const OpenedItem &item,
                                                                const Places &places) const {
    const std::string &path = item.place().path();
    if (std::optional<std::string> reason = refusal(path))
        return reason;
    // The same place by the path of each guarded folder that the item is, or is inside.
    std::vector<FileIdentity> folders = item.ancestors();
    if (item.isFolder())
        folders.push_back(item.identity().file);
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
            if (std::optional<std::string> reason = refusal(inGuarded))
                return reason;
            if (isAtTheTop(inGuarded))
                return tooCloseToTheTop(inGuarded);
        }
        end = std::min(path.find('/', end + 1), path.size());
    }
    return std::nullopt;
}

RemovalGuards::RemovalGuards(const Host &host) : system_(host.system), inForce_(host) {
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
    // Any name that no list contains.
    const FileURL inside = folder.standardized().appending("\x01");
    return !isAtTheTop(inside.path()) && !inForce_.refusal(inside.path()) &&
           !(platform_ && platform_->refusal(inside.path()));
}

RemovalGuards::Located RemovalGuards::locate() const {
    return {inForce_.locate(), platform_ ? platform_->locate() : Places()};
}

std::optional<std::string> RemovalGuards::check(const OpenedItem &item, const Located &guarded) const {
    if (isAtTheTop(item.place().path()))
        return tooCloseToTheTop(item.place().path());
    if (std::optional<std::string> reason = inForce_.refusal(item, guarded.inForce))
        return reason;
    return platform_ ? platform_->refusal(item, guarded.platform) : std::nullopt;
}

std::optional<std::string> RemovalGuards::checkOtherPath(const std::string &path) const {
    if (std::optional<std::string> reason = inForce_.refusal(path))
        return reason;
    if (isAtTheTop(path))
        return tooCloseToTheTop(path);
    return platform_ ? platform_->refusal(path) : std::nullopt;
}

} // namespace brimvale
