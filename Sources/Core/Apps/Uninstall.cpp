#include "Core/Apps/Uninstall.h"

#include "Base/Bytes.h"
#include "Catalogs/CleanupNotes.h"
#include "Catalogs/ProgramSigns.h"
#include "Core/Text/Formatting.h"
#include "Platform/Characters.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <variant>

namespace brimvale::Uninstall {

namespace {

bool removesBundle(const AppRow &row, bool includeBundle) {
    return includeBundle && isRemovedAsItem(row.app);
}

/// The application with how it is removed, as a part of the confirmation; empty where it stays.
std::string removedApp(const AppRow &row, bool includeBundle) {
    if (includeBundle && isRemovedByCommand(row.app))
        return "the app with “" + commandFor(row.app) + "” and ";
    if (removesBundle(row, includeBundle))
        return row.app.kind == AppKind::bundle ? "the app bundle and " : "the app and ";
    return "";
}

/// An orphan stays while a program runs that has its name, or that has it open.
std::shared_ptr<const CleanupNotes> notesOnOrphan(const FileURL &url) {
    const std::string name(url.fileName());
    const std::string program = name.substr(name.starts_with('.') ? 1 : 0);
    return std::make_shared<CleanupNotes>(CleanupNotes{
        .program = std::make_shared<ProgramSigns>(ProgramSigns{.name = "A program that uses “" + name + "”",
                                                               .processes = {program, caseFolded(program)},
                                                               .openFolder = url.path(),
                                                               .mustNotRun = true})});
}

bool lists(const AppRow &row, const FileURL &leftover) {
    return std::any_of(row.leftovers.begin(), row.leftovers.end(),
                       [&](const LeftoverItem &one) { return one.url == leftover; });
}

} // namespace

bool isRemovedAsItem(const InstalledApp &app) {
    return !app.isSystemApp && std::holds_alternative<RemovedAsItem>(app.removal);
}

bool isRemovedByCommand(const InstalledApp &app) {
    return !app.isSystemApp && std::holds_alternative<RemovedByCommand>(app.removal);
}

bool isRemovedHere(const InstalledApp &app) {
    return isRemovedAsItem(app) || isRemovedByCommand(app);
}

std::string commandFor(const InstalledApp &app) {
    if (const auto *inTerminal = std::get_if<RemovedInTerminal>(&app.removal))
        return inTerminal->command;
    const auto *command = std::get_if<RemovedByCommand>(&app.removal);
    if (command == nullptr)
        return "";
    std::string words = command->program;
    for (const std::string &argument : command->arguments)
        if (argument != "-y")
            words.append(" ").append(argument);
    return words;
}

std::string otherRemoval(const InstalledApp &app) {
    if (app.isSystemApp)
        return "This is a system app. Brimvale will not remove it.";
    if (const auto *elsewhere = std::get_if<RemovedElsewhere>(&app.removal))
        return "Remove it with " + elsewhere->program + ", which added it.";
    const auto *inTerminal = std::get_if<RemovedInTerminal>(&app.removal);
    if (inTerminal == nullptr)
        return "";
    std::string text = "It belongs to ";
    text.append(app.origin.empty() ? "a package" : "the package ").append(app.origin);
    text.append(". Remove it ");
    const bool hasLink = !inTerminal->softwareLink.empty();
    if (inTerminal->command.empty())
        return text.append(hasLink ? "in the software center." : "with the package manager of the system.");
    return text.append(hasLink ? "in the software center, or with this command:" : "with this command:");
}

std::string softwareLinkFor(const InstalledApp &app) {
    const auto *inTerminal = std::get_if<RemovedInTerminal>(&app.removal);
    return inTerminal == nullptr || app.isSystemApp ? "" : inTerminal->softwareLink;
}

std::string uninstallerOf(const InstalledApp &app) {
    const auto *item = std::get_if<RemovedAsItem>(&app.removal);
    return item == nullptr || app.isSystemApp ? "" : item->uninstaller;
}

CleanupEntry entryOf(const LeftoverItem &item) {
    return {.url = item.url,
            .size = item.size,
            .isFolder = item.isFolder,
            .pin = item.pin,
            .hasLinkedFiles = item.hasLinkedFiles,
            .notes = item.isOrphan ? notesOnOrphan(item.url) : nullptr};
}

std::vector<CleanupEntry> entries(const AppRow &row, const std::vector<LeftoverItem> &leftovers,
                                  bool includeBundle) {
    std::vector<CleanupEntry> entries;
    for (const LeftoverItem &leftover : leftovers)
        entries.push_back(entryOf(leftover));
    if (removesBundle(row, includeBundle)) {
        const std::optional<ItemPin> &pin = row.app.pin; // the bundle can also be a link to a folder
        entries.push_back({.url = row.app.url,
                           .size = row.bundleSize,
                           .isFolder = pin && pin->item.isFolder,
                           .pin = pin,
                           .hasLinkedFiles = row.bundleHasLinkedFiles});
    }
    return entries;
}

std::string confirmation(const AppRow &row, const std::vector<LeftoverItem> &leftovers, bool includeBundle) {
    const std::string app = removedApp(row, includeBundle);
    std::string text = "This removes " + app;
    std::int64_t size = app.empty() ? 0 : row.bundleSize;
    for (const LeftoverItem &leftover : leftovers)
        size = checkedAdd(size, leftover.size);
    text.append(std::to_string(leftovers.size())).append(" supporting item");
    if (leftovers.size() != 1)
        text += 's';
    text.append(", freeing about ").append(Fmt::byteFormatter(size));
    if (!app.empty() && row.app.kind == AppKind::snap)
        text.append(". The app’s data is removed too; snap keeps a copy for about a month");
    return text;
}

bool isPlain(const LeftoverItem &item) {
    const bool isDisputed = item.confidence == MatchConfidence::likely && !item.alsoClaimedBy.empty();
    return !item.isVague && !item.isCareful && !isDisputed;
}

std::string otherClaims(const LeftoverItem &item, const FileURL &claimant, std::span<const AppRow> rows) {
    std::vector<std::string> names = item.alsoClaimedBy;
    for (const AppRow &row : rows)
        if (row.app.url != claimant && lists(row, item.url) &&
            std::find(names.begin(), names.end(), row.app.name) == names.end())
            names.push_back(row.app.name);
    std::string text;
    for (const std::string &name : names)
        text.append(text.empty() ? "Also claimed by " : ", ").append(name);
    return text;
}

} // namespace brimvale::Uninstall
