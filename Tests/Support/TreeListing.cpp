#include "Support/TreeListing.h"

#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>

namespace brimvale::testing {

namespace fs = std::filesystem;

namespace {

std::string described(const fs::directory_entry &entry) {
    if (entry.is_symlink())
        return "link to " + fs::read_symlink(entry.path()).native();
    if (entry.is_directory())
        return "folder";
    if (!entry.is_regular_file())
        return "other";
    return "file " + contentOf(entry.path());
}

} // namespace

std::vector<std::string> listing(const std::string &folder) {
    std::error_code none;
    constexpr fs::directory_options options = fs::directory_options::skip_permission_denied;
    std::vector<fs::directory_entry> entries;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder, options, none))
        entries.push_back(entry);
    std::sort(entries.begin(), entries.end());
    std::vector<std::string> lines;
    for (const fs::directory_entry &entry : entries)
        lines.push_back(entry.path().native().substr(folder.size()) + ": " + described(entry));
    return lines;
}

} // namespace brimvale::testing
