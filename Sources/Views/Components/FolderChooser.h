#pragma once

#include <QString>
#include <functional>
#include <string>

class QWidget;

namespace brimvale {

/// Opens the system's dialog that chooses a folder, at the folder `start`, over the window of `asking`.
/// `chosen` gets the path, unless the user cancels or `asking` is gone by then.
void chooseFolder(QWidget &asking, const QString &title, const std::string &start,
                  std::function<void(const std::string &path)> chosen);

} // namespace brimvale
