#pragma once

namespace brimvale {

class Folder;

/// Whether this open folder is the one with the items of a Trash of the user.
[[nodiscard]] bool isOwnTrash(const Folder &folder);

} // namespace brimvale
