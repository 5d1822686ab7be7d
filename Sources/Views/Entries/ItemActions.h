#pragma once

#include "Base/FileURL.h"

#include <QString>
#include <cstddef>
#include <vector>

class QMenu;
class QWidget;

namespace brimvale {

/// What can be done with any item that a page shows.
namespace ItemActions {

/// Shows the item in the system's file browser, or the folder around it where that cannot be asked. Does not
/// wait.
void reveal(const FileURL &item);

/// Puts the paths on the clipboard: as text for people, and as URIs for programs, which tell every byte of a
/// name.
void copyPaths(const std::vector<FileURL> &items);

/// What a menu says that offers to copy the paths of so many items.
[[nodiscard]] QString copyTitle(std::size_t items);

/// A menu of the above for the items, which deletes itself when it is closed.
[[nodiscard]] QMenu *menuFor(const std::vector<FileURL> &items, QWidget *parent);

} // namespace ItemActions

} // namespace brimvale
