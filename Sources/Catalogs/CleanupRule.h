#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// What an item has to be to be an entry of a cleanup target. Checked when it is listed, and again just
/// before it is removed.
struct CleanupRule {
    std::string folder;                   ///< an absolute path
    bool isDeep = false;                  ///< anywhere inside the folder; otherwise directly in it
    std::vector<std::string> takes = {};  ///< patterns of names; none for every name
    std::vector<std::string> leaves = {}; ///< patterns of names that stay
    int leastDays = 0;                    ///< since it, or anything inside, was last changed
    bool ownFilesOnly = false;            ///< files and folders of the user who runs the program

    friend bool operator==(const CleanupRule &, const CleanupRule &) = default;
};

/// Whether a name fits a pattern, in which "*" stands for any bytes and "#" for one digit.
[[nodiscard]] bool fitsPattern(std::string_view name, std::string_view pattern);

/// Whether the rule allows a name.
[[nodiscard]] bool allowsName(const CleanupRule &rule, std::string_view name);

/// Whether the rule allows the item at an absolute path as it is now. Reads the disk.
[[nodiscard]] bool allowsItem(const CleanupRule &rule, const std::string &path);

} // namespace brimvale
