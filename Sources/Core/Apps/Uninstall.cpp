#include "Core/Apps/Uninstall.h"

#include "Base/Bytes.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <optional>
#include <variant>

namespace brimvale::Uninstall {

namespace {

bool removesBundle(const AppRow &row, bool includeBundle) {
    return includeBundle && isRemovedAsItem(row.app);
}

} // namespace

bool isRemovedAsItem(const InstalledApp &app) {
    return !app.isSystemApp && std::holds_alternative<RemovedAsItem>(app.removal);
}

std::string commandFor(const InstalledApp &app) {
    if (const auto *inTerminal = std::get_if<RemovedInTerminal>(&app.removal))
        return inTerminal->command;
    const auto *command = std::get_if<RemovedByCommand>(&app.removal);
    if (command == nullptr)
        return "";
    std::string words = command->program;
    for (const std::string &argument : command->arguments)
        words.append(" ").append(argument);
    return words;
}

std::string otherRemoval(const InstalledApp &app) {
    if (app.isSystemApp)
        return "This is a system app. Brimvale will not remove it.";
    if (const auto *elsewhere = std::get_if<RemovedElsewhere>(&app.removal))
        return "Remove it with " + elsewhere->program + ", which has added it.";
    if (app.kind == AppKind::flatpak || app.kind == AppKind::snap)
        return "Remove it in the software center, or with this command:";
    if (const auto *inTerminal = std::get_if<RemovedInTerminal>(&app.removal))
        return inTerminal->command.empty()
                   ? "It belongs to a package. Remove it with the package manager of the system."
                   : "It belongs to the package " + app.origin +
                         ". Remove it in the software center, or with this command:";
    return "";
}

CleanupEntry entryOf(const LeftoverItem &item) {
    return {.url = item.url,
            .size = item.size,
            .isFolder = item.isFolder,
            .pin = item.pin,
            .hasLinkedFiles = item.hasLinkedFiles};
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
    std::string text = "This removes ";
    std::int64_t size = 0;
    if (removesBundle(row, includeBundle)) {
        text += row.app.kind == AppKind::bundle ? "the app bundle and " : "the app and ";
        size = row.bundleSize;
    }
    for (const LeftoverItem &leftover : leftovers)
        size = checkedAdd(size, leftover.size);
    text.append(std::to_string(leftovers.size())).append(" supporting item");
    if (leftovers.size() != 1)
        text += 's';
    return text.append(", freeing about ").append(Fmt::byteFormatter(size));
}

std::string otherClaims(const LeftoverItem &item, const FileURL &claimant, std::span<const AppRow> rows) {
    std::string text;
    for (const AppRow &row : rows) {
        if (row.app.url == claimant ||
            std::none_of(row.leftovers.begin(), row.leftovers.end(),
                         [&](const LeftoverItem &other) { return other.url == item.url; }))
            continue;
        text.append(text.empty() ? "Also claimed by " : ", ").append(row.app.name);
    }
    return text;
}

} // namespace brimvale::Uninstall
