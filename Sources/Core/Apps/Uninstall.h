#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Apps/AppRow.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"

#include <span>
#include <string>
#include <vector>

namespace brimvale {

/// Prepares the removal of an application, as values; nothing is removed here.
namespace Uninstall {

/// Whether the item at the application's path is removed with it: neither an application of the system, nor
/// one that another program removes.
[[nodiscard]] bool isRemovedAsItem(const InstalledApp &app);

/// Whether the program that installed the application removes it; never one of the system.
[[nodiscard]] bool isRemovedByCommand(const InstalledApp &app);

/// Whether one of both.
[[nodiscard]] bool isRemovedHere(const InstalledApp &app);

/// How the user removes an application that is not removed here, as a sentence; it ends in a colon
/// where `commandFor` follows. Empty for others.
[[nodiscard]] std::string otherRemoval(const InstalledApp &app);

/// The command that removes the application, for a terminal, where it may ask; may be empty.
[[nodiscard]] std::string commandFor(const InstalledApp &app);

/// The link that shows a package's application in the program for software; empty where there is none, and
/// for applications of the system.
[[nodiscard]] std::string softwareLinkFor(const InstalledApp &app);

/// The program of the application's maker that removes it, by path; empty where there is none.
[[nodiscard]] std::string uninstallerOf(const InstalledApp &app);

/// The leftover as an entry to remove.
[[nodiscard]] CleanupEntry entryOf(const LeftoverItem &item);

/// What is removed, with the sizes that the analysis has measured: these leftovers in their order, then, if
/// asked, the application's bundle; never that of a system application, or what a command removes.
[[nodiscard]] std::vector<CleanupEntry> entries(const AppRow &row, const std::vector<LeftoverItem> &leftovers,
                                                bool includeBundle);

/// The question that is put before a removal, without a full stop: "This removes the app bundle and 2
/// supporting items, freeing about 1.2 MB".
[[nodiscard]] std::string confirmation(const AppRow &row, const std::vector<LeftoverItem> &leftovers,
                                       bool includeBundle);

/// Whether a leftover may be selected together with others, without a look at it: it is neither vague nor
/// careful, and no other application claims what is only likely.
[[nodiscard]] bool isPlain(const LeftoverItem &item);

/// Says who else a leftover may belong to: "Also claimed by NAME", with a comma between several names, those
/// that the search knows before those of the rows; empty where only the application `claimant` has a claim.
[[nodiscard]] std::string otherClaims(const LeftoverItem &item, const FileURL &claimant,
                                      std::span<const AppRow> rows);

} // namespace Uninstall

} // namespace brimvale
