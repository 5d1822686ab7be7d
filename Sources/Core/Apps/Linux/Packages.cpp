#include "Core/Apps/Linux/Packages.h"

#include "Core/Scan/ParallelLoop.h"
#include "Platform/FileContents.h"

#include <algorithm>
#include <charconv>
#include <mutex>
#include <system_error>

namespace brimvale::linuxApps {

namespace {

constexpr std::string_view entriesFolder = "share/applications/";
constexpr std::size_t mostListBytes = std::size_t{64} << 20;

bool matchesPattern(std::string_view name, std::string_view pattern) {
    return pattern.ends_with('*') ? name.starts_with(pattern.substr(0, pattern.size() - 1)) : name == pattern;
}

/// Whether the bytes from `at` on, of this length, are a whole path of the list or the start of one that ends
/// at a slash.
bool isWholePath(std::string_view list, std::size_t at, std::size_t length) {
    const std::size_t line = at > 0 && list[at - 1] == '/' ? at - 1 : at;
    const std::size_t end = at + length;
    return (line == 0 || list[line - 1] == '\n') &&
           (end == list.size() || list[end] == '\n' || list[end] == '/');
}

bool hasPath(std::string_view list, std::string_view relative) {
    for (std::size_t at = list.find(relative); at != std::string_view::npos; at = list.find(relative, at + 1))
        if (isWholePath(list, at, relative.size()))
            return true;
    return false;
}

} // namespace

WantedPaths::WantedPaths(const std::vector<std::string> &paths) {
    for (const std::string &path : paths)
        if (path.find(entriesFolder) != std::string::npos)
            entries_.emplace(path.substr(1), path);
        else if (path.size() > 1)
            others_.push_back(path);
}

std::vector<std::string> WantedPaths::in(std::string_view list) const {
    std::vector<std::string> found;
    addEntriesIn(list, found);
    constexpr std::string_view usr = "/usr/";
    for (const std::string &path : others_) {
        const std::string_view relative = std::string_view(path).substr(1);
        // A list may name what is in "/usr/bin" by its older name "/bin".
        if (hasPath(list, relative) ||
            (path.starts_with(usr) && hasPath(list, std::string_view(path).substr(usr.size()))))
            found.push_back(path);
    }
    return found;
}

void WantedPaths::addEntriesIn(std::string_view list, std::vector<std::string> &found) const {
    for (std::size_t at = list.find(entriesFolder); at != std::string_view::npos;
         at = list.find(entriesFolder, at + 1)) {
        const std::size_t lineBefore = list.rfind('\n', at);
        std::size_t line = lineBefore == std::string_view::npos ? 0 : lineBefore + 1;
        line += list[line] == '/' ? 1U : 0U;
        const std::size_t end = std::min(list.find('\n', at), list.size());
        if (const auto entry = entries_.find(std::string(list.substr(line, end - line)));
            entry != entries_.end())
            found.push_back(entry->second);
    }
}

std::unordered_map<std::string, std::string>
listsWith(const WantedPaths &wanted, std::vector<std::string> lists, void (*toLines)(std::string &)) {
    std::sort(lists.begin(), lists.end());
    std::unordered_map<std::string, std::string> found;
    std::mutex lock;
    forEachInParallel(lists.size(), threadsForReading(), [&](std::size_t i) {
        std::optional<std::string> list = contentsOfFile(lists[i], mostListBytes);
        if (!list)
            return;
        if (toLines != nullptr)
            toLines(*list);
        const std::vector<std::string> paths = wanted.in(*list);
        const std::lock_guard guard(lock);
        for (const std::string &path : paths)
            found.emplace(path, lists[i]);
    });
    return found;
}

std::optional<std::int64_t> sizeInBytes(std::string_view text) {
    constexpr std::string_view hexadecimal = "0x";
    const bool isHexadecimal = text.starts_with(hexadecimal);
    text.remove_prefix(isHexadecimal ? hexadecimal.size() : 0);
    std::int64_t bytes = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), bytes, isHexadecimal ? 16 : 10);
    return error == std::errc() && end == text.data() + text.size() && bytes > 0 ? std::optional(bytes)
                                                                                 : std::nullopt;
}

Owners ownersOf(const std::vector<std::string> &paths, const DesktopPlaces &places) {
    const PackageDatabases &databases = places.packages;
    const WantedPaths wanted(paths);
    Owners owners = dpkgOwners(wanted, databases.dpkg);
    owners.merge(pacmanOwners(wanted, databases.pacman));
    owners.merge(apkOwners(wanted, databases.apk));
    owners.merge(xbpsOwners(wanted, databases.xbps));
    owners.merge(portageOwners(wanted, databases.portage));
    owners.merge(rpmOwners(paths, databases));
    for (auto &[path, package] : owners) {
        const std::string_view plain = std::string_view(package.name).substr(package.name.find('/') + 1);
        for (const std::string &pattern : databases.systemPackages)
            package.isOfSystem = package.isOfSystem || matchesPattern(plain, pattern);
    }
    return owners;
}

} // namespace brimvale::linuxApps
