#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

#include <cstdint>

namespace brimvale {

/// The system's program for looking at files.
namespace FileBrowser {

/// How the program answered. `silent`: it runs, but did not answer in time.
enum class Answer : std::uint8_t { shown, none, silent };

/// Shows the item, selected in its parent folder. May block for seconds: call it off the main thread.
[[nodiscard]] Answer reveal(const FileURL &item, const Tools &tools);

/// Shows the system's window with the properties of the item. May block for seconds.
[[nodiscard]] Answer showProperties(const FileURL &item, const Tools &tools);
/// Whether the system has such a window that a program can open.
[[nodiscard]] bool canShowProperties(const Tools &tools);

/// What is at a path; a link to a folder is a folder. May block if the disk does not answer.
enum class Kind : std::uint8_t { gone, file, folder };
[[nodiscard]] Kind kindOf(const FileURL &item);

/// The item as a file URI (RFC 8089), every byte but letters, digits and "/-._~" percent-encoded.
[[nodiscard]] std::string fileURI(const FileURL &item);

} // namespace FileBrowser

} // namespace brimvale
