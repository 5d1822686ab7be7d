// Logs of the system that were put aside, and memory images of crashed programs.

#include "Catalogs/Linux/CleanupRecords.h"

#include "Platform/FileReader.h"
#include "Platform/Folder.h"

#include <array>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

/// Names that look like addresses of the network: current logs of other computers.
const std::vector<std::string> addressPatterns = {"#*.#*.#*.#*", "*.#*.#*.#*.#*"};

/// The folders in which no log was put aside by its name: the database of Slackware, and the journal.
bool isLeftOut(const std::string &name) {
    return name == "packages" || name == "scripts" || name == "journal";
}

/// Whether a file says that it is the memory of a crashed program.
bool isCoreFile(const std::string &path) {
    FileReader reader(path);
    std::array<char, 18> head{};
    const auto read = reader.isOpen() ? reader.read(head) : std::nullopt;
    return read && read->size() == head.size() &&
           read->starts_with("\x7f"
                             "ELF") &&
           ((*read)[16] == 4 || (*read)[17] == 4); // its type, in either order of bytes
}

} // namespace

void findRotatedLogs(CleanupSearch &search) {
    for (const std::string &root : search.find({"/var/log"})) {
        const auto rule = std::make_shared<const CleanupRule>(
            CleanupRule{.folder = root,
                        .isDeep = true,
                        .takes = {"*.#", "*.##", "*.###", "*.gz", "*.xz", "*.bz2", "*.zst", "*.old",
                                  "*-########", "*-##########"},
                        .leaves = addressPatterns,
                        .leastDays = 1});
        std::vector<std::string> folders = {root};
        while (!folders.empty()) {
            const std::string folder = std::exchange(folders.back(), {});
            folders.pop_back();
            for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>())) {
                const std::string path = joinPath(folder, name);
                const std::optional<FileStatus> status = fileStatus(path);
                if (status && status->kind == FileKind::directory) {
                    if (folder != root || !isLeftOut(name))
                        folders.push_back(path);
                } else if (status && status->kind == FileKind::regularFile && allowsItem(*rule, path) &&
                           !search.running().use(path)) {
                    search.add(path, {.rule = rule});
                }
            }
        }
    }
}

void findCoreFiles(CleanupSearch &search) {
    const std::string home = search.places().host().home.path();
    const auto rule = std::make_shared<const CleanupRule>(
        CleanupRule{.folder = home, .takes = {"core", "core.#*"}, .ownFilesOnly = true});
    for (const std::string &name : namesIn(home).value_or(std::vector<std::string>())) {
        const std::string path = joinPath(home, name);
        if (allowsName(*rule, name) && allowsItem(*rule, path) && isCoreFile(path))
            search.add(path, {.rule = rule});
    }
}

} // namespace brimvale::linuxCatalog
