#include "Core/Removal/RemovalGuards.h"

#include "Base/Text.h"
#include "Catalogs/Catalog.h"
#include "Platform/Characters.h"
#include "Platform/FileAccess.h"
#include "Platform/FileStatus.h"
#include "Platform/UserDirectories.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace brimvale {

namespace {

/// The structural folders of the host: those of the catalog and the user's own, by their local names.
std::vector<std::string> structuralFolders(const Host &host) {
    std::vector<std::string> folders = catalogOf(host.system).guardedPaths(host.home).structural;
    for (const FileURL &folder : userDirectories(host.home).all)
        folders.push_back(folder.path());
    return folders;
}

/// The host with the resolved path of its home, where that is different: a scan of the whole disk finds the
/// home by both paths.
std::optional<Host> withResolvedHome(const Host &host) {
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(host.home.path(), error);
    if (error || resolved == host.home.path())
        return std::nullopt;
    Host other = host;
    other.home = FileURL(resolved.native());
    return other;
}

std::string sentence(const std::string &path, std::string_view predicate) {
    return displayText(path).append(predicate);
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

bool areTheSameItem(const std::string &a, const std::string &b) {
    const std::optional<FileStatus> one = fileStatus(a);
    const std::optional<FileStatus> other = fileStatus(b);
    return one && other && one->identity == other->identity;
}

} // namespace

RemovalGuards::SystemGuards::SystemGuards(const Host &host) {
    const std::vector<std::string> folders = structuralFolders(host);
    structural_.insert(folders.begin(), folders.end());
    if (const std::optional<Host> resolved = withResolvedHome(host)) {
        const std::vector<std::string> more = structuralFolders(*resolved);
        structural_.insert(more.begin(), more.end());
    }
    GuardedPaths paths = catalogOf(host.system).guardedPaths(host.home);
    openPrefixes_ = std::move(paths.openPrefixes);

    // Standardising may have dropped a leading /private, so both forms are checked.
    constexpr std::string_view privateFolder = "/private";
    for (std::string &prefix : paths.protectedPrefixes) {
        std::string without = prefix.starts_with("/private/") ? prefix.substr(privateFolder.size()) : "";
        protectedPrefixes_.push_back({std::move(prefix), std::move(without)});
    }

    const auto addSpelling = [&](const std::string &folder) {
        if (folder.size() > 1)
            spellings_.emplace_back(caseFolded(folder), folder);
    };
    std::for_each(structural_.begin(), structural_.end(), addSpelling);
    for (const Prefix &prefix : protectedPrefixes_)
        for (const std::string &text : {prefix.protectedPrefix, prefix.withoutPrivate})
            addSpelling(text.substr(0, text.rfind('/')));
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

RemovalGuards::RemovalGuards(const Host &host) : inForce_(host) {
    if (host.system != platformSystem())
        platform_.emplace(Host{platformSystem(), host.home, host.tools});
}

std::optional<std::string> RemovalGuards::check(const FileURL &url) const {
    const FileURL standardized = url.standardized();
    const std::string &path = standardized.path();
    if (path == "/")
        return "Refusing to operate on the volume root.";
    if (std::optional<std::string> refusal = inForce_.refusal(path))
        return refusal;
    if (isAtTheTop(path))
        return sentence(path, " is too close to the volume root to remove safely.");
    if (!itemExists(path))
        return sentence(path, " no longer exists.");
    return platform_ ? platform_->refusal(path) : std::nullopt;
}

} // namespace brimvale
