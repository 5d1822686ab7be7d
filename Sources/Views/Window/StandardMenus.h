#pragma once

#include <functional>

class QMainWindow;
class QMenu;

namespace brimvale {

enum class Appearance;

/// Menu entries that every application has.
namespace StandardMenus {

/// Copy: the focused widget's text or, on a page of items, their paths.
void addEditing(QMenu &menu);

/// System, Light and Dark, of which one is checked, at first the system's. Choosing another calls `choose`.
void addAppearances(QMenu &menu, const std::function<void(Appearance)> &choose);

/// Minimise, zoom, full screen.
void addWindow(QMenu &menu, QMainWindow &window);

/// Closes the front window, which may be another than this one.
void addClosing(QMenu &menu, QMainWindow &window);

} // namespace StandardMenus

} // namespace brimvale
