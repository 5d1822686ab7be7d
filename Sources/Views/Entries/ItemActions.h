#pragma once

#include "Base/FileURL.h"

#include <QString>
#include <cstddef>
#include <functional>
#include <vector>

class QMenu;
class QWidget;

namespace brimvale {

/// The actions for any item shown on a page.
namespace ItemActions {

/// Shows the item in the system's file browser, or opens its parent folder if the browser cannot show it.
/// Does not wait.
void reveal(const FileURL &item);

/// Puts the paths on the clipboard: as text for people, and as URIs for programs, which keep every byte.
void copyPaths(const std::vector<FileURL> &items);

/// The menu entry for copying the paths of this many items.
[[nodiscard]] QString copyTitle(std::size_t items);

/// A menu of these actions for the items. It deletes itself when it is closed.
[[nodiscard]] QMenu *menuFor(const std::vector<FileURL> &items, QWidget *parent);

/// Adds an entry that puts a command on the clipboard.
void addCommand(QMenu &menu, const QString &command);

/// Adds an entry that shows a folder on the page Browse.
void addBrowsing(QMenu &menu, std::function<void()> browse);

} // namespace ItemActions

} // namespace brimvale
