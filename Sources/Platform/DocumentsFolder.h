#pragma once

#include "Base/FileURL.h"

#include <optional>

namespace brimvale {

/// The folder for the documents of the user whose home this is, as the system has it set; nothing where it
/// has none.
[[nodiscard]] std::optional<FileURL> documentsFolder(const FileURL &home);

} // namespace brimvale
