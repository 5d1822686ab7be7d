#pragma once

#include "Views/Components/DesktopDialog.h"

#include <QString>
#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace brimvale {

/// Opens the desktop's dialog to save a file, or Qt's where it has none, over the window of `asking`. It asks
/// itself before a file is replaced. The dialog of Qt adds `suffix` to a name without one. Calls `chosen`
/// with the path, unless the user cancels or `asking` is destroyed first.
void chooseFileToSave(QWidget &asking, const QString &title, const QString &name, const QString &suffix,
                      std::function<void(const std::string &path)> chosen);

/// The same to open a file of these kinds.
void chooseFileToOpen(QWidget &asking, const QString &title, const std::vector<OfferedFiles> &files,
                      std::function<void(const std::string &path)> chosen);

} // namespace brimvale
