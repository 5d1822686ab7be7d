#pragma once

#include "Base/FileURL.h"

#include <QString>
#include <cstddef>
#include <vector>

class QMenu;
class QWidget;

namespace brimvale {

/// The actions for any item shown on a page. None of them waits; what fails is said in the window of `page`.
namespace ItemActions {

/// Shows the item in the system's file browser, or opens its parent folder if the browser cannot show it.
void reveal(const FileURL &item, QWidget *page);

/// Opens a file or a folder with the desktop's program for it.
void open(const FileURL &item, QWidget *page);

/// Opens a terminal in the folder, or in the parent folder of a file.
void openTerminal(const FileURL &item, QWidget *page);

/// Shows the system's window with the properties of the item.
void showProperties(const FileURL &item, QWidget *page);

/// Puts the paths on the clipboard: as text for people, and as URIs for programs, which keep every byte.
void copyPaths(const std::vector<FileURL> &items);

/// The menu entry for copying the paths of this many items.
[[nodiscard]] QString copyTitle(std::size_t items);

/// A menu of these actions for the items. It deletes itself when it is closed.
[[nodiscard]] QMenu *menuFor(const std::vector<FileURL> &items, QWidget *page);

/// Adds the entries for one item that other programs answer: to show it, a terminal, its properties.
void addOtherPrograms(QMenu &menu, const FileURL &item, QWidget *page);

/// Adds an entry that puts a command on the clipboard.
void addCommand(QMenu &menu, const QString &command);

} // namespace ItemActions

} // namespace brimvale
