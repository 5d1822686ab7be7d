#pragma once

#include <QString>
#include <functional>
#include <string>

class QWidget;

namespace brimvale {

/// Opens the system's dialog to save a file, over the window of `asking`. It asks itself before a file is
/// replaced. `suffix` is added to a name without one. Calls `chosen` with the path, unless the user cancels
/// or `asking` is destroyed first.
void chooseFileToSave(QWidget &asking, const QString &title, const QString &name, const QString &suffix,
                      std::function<void(const std::string &path)> chosen);

/// The same to open a file. `filter` names the kinds of files, as `QFileDialog` takes it.
void chooseFileToOpen(QWidget &asking, const QString &title, const QString &filter,
                      std::function<void(const std::string &path)> chosen);

} // namespace brimvale
