#pragma once

#include <QString>
#include <functional>
#include <string>

class QWidget;

namespace brimvale {

/// A dialog of the desktop that asks for a folder.
struct DesktopDialog {
    QString title;
    std::string start; ///< the path of the folder to begin with

    std::function<void(const std::string &path)> chosen; ///< not called if the user cancels
    std::function<void()> otherwise;                     ///< called where the desktop has no such dialog
};

/// Lets the desktop ask in a dialog of its own over the window of `asking`, one at a time. Never waits, and
/// calls nothing after `asking` is destroyed. On macOS Qt shows the dialog of the system by itself.
void openInDesktop(QWidget &asking, DesktopDialog dialog);

} // namespace brimvale
