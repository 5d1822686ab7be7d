#pragma once

class QMainWindow;
class QMenu;

namespace brimvale {

/// Menu entries that every application has.
namespace StandardMenus {

/// Copy: the focused widget's text or, on a page of items, their paths.
void addEditing(QMenu &menu);

/// Minimise, zoom, full screen.
void addWindow(QMenu &menu, QMainWindow &window);

/// Closes the front window, which may be another than this one.
void addClosing(QMenu &menu, QMainWindow &window);

} // namespace StandardMenus

} // namespace brimvale
