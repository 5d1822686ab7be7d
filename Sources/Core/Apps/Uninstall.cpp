#include "Core/Apps/Uninstall.h"

#include "Base/Bytes.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <optional>

namespace brimvale::Uninstall {

namespace {

bool removesBundle(const AppRow &row, bool includeBundle) {
    return includeBundle && !row.app.isSystemApp;
}

} // namespace

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
        text += "the app bundle and ";
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
