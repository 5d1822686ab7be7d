#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace brimvale {

/// The files that a dialog shows: "Pictures" with the patterns "*.png" and "*.svg".
struct OfferedFiles {
    QString title;
    QStringList patterns;
};

/// A dialog of the desktop that asks for a file or a folder.
struct DesktopDialog {
    enum class Kind { chooseFolder, openFile, saveFile };

    Kind kind;
    QString title;
    std::string start;                    ///< the path of the folder to begin with
    QString name = {};                    ///< what a saved file is called if the user does not change it
    std::vector<OfferedFiles> files = {}; ///< the first is chosen; all files where there are none

    std::function<void(const std::string &path)> chosen; ///< not called if the user cancels
    std::function<void()> otherwise;                     ///< called where the desktop has no such dialog
};

/// Lets the desktop ask in a dialog of its own over the window of `asking`, one at a time. It asks itself
/// before a file is replaced. Never waits, and calls nothing after `asking` is destroyed. On macOS Qt shows
/// the dialog of the system by itself.
void openInDesktop(QWidget &asking, DesktopDialog dialog);

} // namespace brimvale
