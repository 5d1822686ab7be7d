#pragma once

#include "Base/FileURL.h"

#include <QUrl>
#include <optional>

namespace brimvale {

/// The local file or folder that a URL names, byte for byte; nothing for any other URL.
[[nodiscard]] std::optional<FileURL> localFileOf(const QUrl &url);

} // namespace brimvale
