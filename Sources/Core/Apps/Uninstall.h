#pragma once

#include "Core/Apps/AppRow.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"
#include "Core/Removal/RemovalResult.h"

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// Prepares the removal of an application, as values; nothing is removed here.
namespace Uninstall {

/// What is to be removed, with its allocated bytes as the analysis has measured them.
struct Items {
    std::vector<FileURL> urls; ///< the leftovers in their order, then the bundle
    std::unordered_map<FileURL, std::int64_t> sizes;
};

/// These leftovers of the application and, if asked, its bundle; never that of a system application.
[[nodiscard]] Items items(const AppRow &row, const std::vector<LeftoverItem> &leftovers, bool includeBundle);

/// The question that is put before a removal, without a full stop: "This removes the app bundle and 2
/// supporting items, freeing about 1.2 MB".
[[nodiscard]] std::string confirmation(const AppRow &row, const std::vector<LeftoverItem> &leftovers,
                                       bool includeBundle);

/// Brings the list up to date after a removal: the application's row goes when its bundle has gone, and the
/// leftovers that have gone leave its row and those of the others that claim them.
void update(std::vector<AppRow> &rows, const FileURL &app, const RemovalResult &result);

/// Says who else a leftover may belong to: "Also claimed by NAME", names in the order of the rows and with a
/// comma between several; empty where only the application `claimant` lists it.
[[nodiscard]] std::string otherClaims(const LeftoverItem &item, const FileURL &claimant,
                                      std::span<const AppRow> rows);

} // namespace Uninstall

} // namespace brimvale
