#pragma once

class QMainWindow;
class QMenu;

namespace brimvale {

/// The entries of menus that every application has.
namespace StandardMenus {

/// Copy: what the focused widget copies or, in a page of items, their paths.
void addEditing(QMenu &menu);

/// Minimise, zoom, full screen.
void addWindow(QMenu &menu, QMainWindow &window);

/// Closes the window in front, which may be another than this one.
void addClosing(QMenu &menu, QMainWindow &window);

} // namespace StandardMenus

} // namespace brimvale
