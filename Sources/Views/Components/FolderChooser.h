#pragma once

#include <QString>
#include <functional>
#include <string>

class QWidget;

namespace brimvale {

/// Opens the system's folder dialog at the folder `start`, over the window of `asking`. Calls `chosen` with
/// the path, unless the user cancels or `asking` is destroyed first.
void chooseFolder(QWidget &asking, const QString &title, const std::string &start,
                  std::function<void(const std::string &path)> chosen);

} // namespace brimvale
