#include "Platform/PrivilegedRemoval.h"

namespace brimvale {

/// The command is one argument, and one argument is at most 32 pages long with its zero (MAX_ARG_STRLEN).
std::size_t longestPrivilegedRemoval() {
    return std::size_t{128} * 1024 - 1;
}

std::optional<PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &items,
                                                        const Tools &tools) {
    std::vector<std::string> paths;
    for (const ItemPin &item : items)
        paths.push_back(item.place.path());
    return runAsAdministrator(removalCommand(paths), tools);
}

} // namespace brimvale
