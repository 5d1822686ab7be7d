#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

namespace brimvale {

/// The system's program for looking at files.
namespace FileBrowser {

/// Shows the item, selected in its parent folder. False when no such program answered. May block for seconds:
/// call it off the main thread.
[[nodiscard]] bool reveal(const FileURL &item, const Tools &tools);

/// The item as a file URI (RFC 8089), every byte but letters, digits and "/-._~" percent-encoded.
[[nodiscard]] std::string fileURI(const FileURL &item);

} // namespace FileBrowser

} // namespace brimvale
