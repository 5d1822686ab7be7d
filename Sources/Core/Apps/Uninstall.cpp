#include "Core/Apps/Uninstall.h"

#include "Base/Bytes.h"
#include "Core/Text/Formatting.h"

#include <algorithm>

namespace brimvale::Uninstall {

namespace {

bool removesBundle(const AppRow &row, bool includeBundle) {
    return includeBundle && !row.app.isSystemApp;
}

} // namespace

Items items(const AppRow &row, const std::vector<LeftoverItem> &leftovers, bool includeBundle) {
    Items items;
    const auto add = [&](const FileURL &url, std::int64_t size) {
        items.urls.push_back(url);
        items.sizes.emplace(url, size);
    };
    for (const LeftoverItem &leftover : leftovers)
        add(leftover.url, leftover.size);
    if (removesBundle(row, includeBundle))
        add(row.app.url, row.bundleSize);
    return items;
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

void update(std::vector<AppRow> &rows, const FileURL &app, const RemovalResult &result) {
    const auto hasGone = [&](const FileURL &url) {
        return std::find(result.succeeded.begin(), result.succeeded.end(), url) != result.succeeded.end();
    };
    if (hasGone(app))
        std::erase_if(rows, [&](const AppRow &row) { return row.app.url == app; });
    for (AppRow &row : rows)
        std::erase_if(row.leftovers, [&](const LeftoverItem &item) { return hasGone(item.url); });
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
