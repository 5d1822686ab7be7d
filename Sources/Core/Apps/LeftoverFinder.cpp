#include "Core/Apps/LeftoverFinder.h"

#include "Catalogs/Catalog.h"
#include "Core/Scan/DiskScanner.h"
#include "Platform/Characters.h"
#include "Platform/Dataless.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace brimvale {

namespace {

/// Shorter names match too much.
constexpr std::size_t shortestNameKey = 4;

constexpr std::string_view groupPrefix = "group.";

/// The identifier, alone or followed by a dot and more.
bool beginsWithIdentifier(std::string_view text, std::string_view identifier) {
    return text.starts_with(identifier) &&
           (text.size() == identifier.size() || text[identifier.size()] == '.');
}

bool matchesIdentifier(std::string_view text, std::string_view identifier) {
    return beginsWithIdentifier(text, identifier) ||
           (text.starts_with(groupPrefix) &&
            beginsWithIdentifier(text.substr(groupPrefix.size()), identifier));
}

/// The text after a team identifier and its dot; empty where it does not begin with them.
std::string_view withoutTeam(std::string_view text) {
    constexpr std::size_t teamLength = 10;
    const auto isTeamCharacter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); };
    if (text.size() <= teamLength || text[teamLength] != '.' ||
        !std::all_of(text.begin(), text.begin() + teamLength, isTeamCharacter))
        return {};
    return text.substr(teamLength + 1);
}

/// Whether `text` can be a file name. An identifier that cannot is from a faulty bundle, or from one that
/// tries to claim other files ("../Documents").
bool isFileName(std::string_view text) {
    return !text.empty() && text != "." && text != ".." && text.find('/') == std::string_view::npos;
}

/// The status of what exists at `path`; nothing also for a link that leads nowhere.
std::optional<FileStatus> statusOfExisting(const std::string &path) {
    const std::optional<FileStatus> status = fileStatus(path);
    std::error_code error;
    if (status && status->kind == FileKind::other && !std::filesystem::exists(path, error))
        return std::nullopt;
    return status;
}

} // namespace

/// The names that identify an application's files.
struct LeftoverFinder::Keys {
    std::string identifier;         ///< empty for none
    std::vector<std::string> names; ///< case-folded

    [[nodiscard]] bool isVague() const { return identifier.find('.') == std::string::npos; }
};

LeftoverFinder::LeftoverFinder(const Host &host)
    : LeftoverFinder(catalogOf(host.system).leftoverRules(host), host) {}

LeftoverFinder::LeftoverFinder(LeftoverRules rules, const Host &host)
    : rules_(std::move(rules)), home_(host.home.path()) {
    measuring_.skippedPaths = ScanOptions::cloudProviderRoots(host);
    const NoMaterialization guard;
    for (const ScanRule &rule : rules_.scanRules)
        listings_.push_back(entriesOf(rule.directory));
}

std::vector<LeftoverItem> LeftoverFinder::leftovers(const InstalledApp &app,
                                                    const StopFlag &cancelled) const {
    const Keys keys = keysOf(app);
    std::vector<LeftoverItem> items;
    std::unordered_set<std::string> found;
    const auto add = [&](std::string path, const std::string &category, MatchConfidence confidence,
                         bool requiresAdmin) {
        if (cancelled.isSet() || found.contains(path))
            return;
        const std::optional<FileStatus> status = statusOfExisting(path);
        if (!status)
            return;
        const DiskScanner::QuickFigures figures = DiskScanner::quickFigures(path, measuring_, cancelled);
        found.insert(path);
        const FileURL url(std::move(path));
        items.push_back({.url = url,
                         .category = category,
                         .confidence = confidence,
                         .size = figures.bytes,
                         .requiresAdmin = requiresAdmin,
                         .isFolder = status->kind == FileKind::directory,
                         .pin = pinOf(url),
                         .isVague = confidence == MatchConfidence::exact && keys.isVague(),
                         .hasLinkedFiles = figures.freedBytes != figures.bytes});
    };

    if (!keys.identifier.empty())
        for (const ExactRule &rule : rules_.exactRules)
            for (const std::string &name : rule.names(keys.identifier))
                add(joinPath(rule.directory, name), rule.category, MatchConfidence::exact,
                    !rule.directory.starts_with(home_));
    for (std::size_t i = 0; i < listings_.size(); ++i) {
        const ScanRule &rule = rules_.scanRules[i];
        for (const Entry &entry : listings_[i])
            if (const std::optional<MatchConfidence> confidence = match(entry, rule, keys))
                add(joinPath(rule.directory, entry.name), rule.category, *confidence, rule.requiresAdmin);
    }
    sortLeftovers(items);
    return items;
}

LeftoverFinder::Keys LeftoverFinder::keysOf(const InstalledApp &app) {
    Keys keys;
    if (app.bundleID && isFileName(*app.bundleID))
        keys.identifier = *app.bundleID;
    const std::string_view fileName = deletingPathExtension(app.url.fileName());
    for (const std::string_view name : {std::string_view(app.name), fileName})
        if (perceivedLength(name) >= shortestNameKey)
            keys.names.push_back(caseFolded(name));
    return keys;
}

/// How surely an entry belongs to the application with these keys; nothing where it does not.
std::optional<MatchConfidence> LeftoverFinder::match(const Entry &entry, const ScanRule &rule,
                                                     const Keys &keys) {
    // What looks like an extension may be part of the identifier, so both readings are tried.
    if (!keys.identifier.empty()) {
        const std::string_view base = deletingPathExtension(entry.name);
        for (const std::string_view text : {base, std::string_view(entry.name)})
            if (matchesIdentifier(text, keys.identifier) ||
                (rule.allowsTeamPrefix && matchesIdentifier(withoutTeam(text), keys.identifier)))
                return MatchConfidence::exact;
    }
    const bool isNamed =
        std::find(keys.names.begin(), keys.names.end(), entry.foldedBase) != keys.names.end();
    return isNamed ? std::optional(MatchConfidence::likely) : std::nullopt;
}

std::vector<LeftoverFinder::Entry> LeftoverFinder::entriesOf(const std::string &directory) {
    std::vector<Entry> entries;
    Folder folder = Folder::at(directory, Folder::Links::follow);
    while (const char *name = folder.nextName())
        entries.push_back({name, caseFolded(deletingPathExtension(name))});
    std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) { return a.name < b.name; });
    return entries;
}

} // namespace brimvale
