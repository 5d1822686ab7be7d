#pragma once

#include <QString>
#include <functional>
#include <string>

class QWidget;

namespace brimvale {

/// Opens the desktop's folder dialog, or Qt's where it has none, at the folder `start`, over the window of
/// `asking`. Calls `chosen` with the path, unless the user cancels or `asking` is destroyed first.
void chooseFolder(QWidget &asking, const QString &title, const std::string &start,
                  std::function<void(const std::string &path)> chosen);

/// The dialog of Qt keeps its size and its last folders in a file in the home. After this nothing is kept,
/// because below a device no file can be made. (On macOS this has no effect: the system keeps the state of
/// its own panel.)
void keepNoDialogSettings();

} // namespace brimvale
