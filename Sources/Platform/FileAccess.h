#pragma once

#include <string>

namespace brimvale {

/// What the user may do with the item at an absolute path of any length; links are followed. Every failure
/// counts as no.

/// Whether it exists; a link that leads nowhere does not.
[[nodiscard]] bool itemExists(const std::string &path);

/// Whether it exists and is reported readable. The system may still refuse to open it.
[[nodiscard]] bool isReportedReadable(const std::string &path);

/// Whether it exists and is reported writable; of a folder, whether entries can be made in it and removed.
[[nodiscard]] bool isReportedWritable(const std::string &path);

/// Whether it exists and is reported executable; of a folder, whether it can be entered.
[[nodiscard]] bool isReportedExecutable(const std::string &path);

/// Whether it opens for reading. It is closed at once; a pipe does not block the call.
[[nodiscard]] bool opensForReading(const std::string &path);

/// Whether it is a file or a folder, not a link or the like, and belongs to the user who runs the program.
[[nodiscard]] bool isOwnItem(const std::string &path);

/// Whether it is a folder whose contents can be listed.
[[nodiscard]] bool canListContents(const std::string &path);

} // namespace brimvale
