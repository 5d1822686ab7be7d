#include "Core/Backup/DatabaseSearch.h"

#include "Core/Backup/BackupPlan.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

namespace brimvale {

namespace {

constexpr std::string_view databaseName = "chat.db";
constexpr std::string_view receivedFiles = "Attachments";

std::vector<std::string_view> componentsOf(std::string_view path) {
    std::vector<std::string_view> components;
    while (true) {
        const std::size_t slash = path.find('/');
        components.push_back(path.substr(0, slash));
        if (slash == std::string_view::npos)
            return components;
        path.remove_prefix(slash + 1);
    }
}

} // namespace

std::optional<std::string> messagesDatabaseIn(const FileListing &backup,
                                              const std::vector<std::string> &items) {
    std::optional<std::string> best;
    std::size_t fewest = std::numeric_limits<std::size_t>::max();
    for (const ListedEntry &entry : backup.entries) {
        if (entry.record.kind != EntryKind::file || !entry.path.ends_with(databaseName))
            continue;
        const std::vector<std::string_view> components = componentsOf(entry.path);
        if (components.back() != databaseName || components.size() >= fewest ||
            std::find(items.begin(), items.end(), components.front()) == items.end() ||
            std::any_of(components.begin(), components.end(), [](std::string_view component) {
                return BackupPlan::isSameName(component, receivedFiles);
            }))
            continue;
        fewest = components.size();
        best = entry.path;
    }
    return best;
}

} // namespace brimvale
