#include "Core/Apps/Linux/AppFinders.h"

#include "Base/Text.h"
#include "Core/Apps/Linux/EntrySearch.h"
#include "Platform/FileAccess.h"
#include "Platform/FileReader.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <unordered_set>
#include <utility>

namespace brimvale::linuxApps {

namespace {

constexpr std::string_view imageEnding = ".appimage";
constexpr int levelsOfImages = 2;
/// A folder with more entries is not a place for programs.
constexpr std::size_t mostEntries = 5000;
constexpr std::int64_t leastImageBytes = 64 * 1024;
/// They follow the name in the names of files.
constexpr std::string_view systemWords[] = {"x86", "amd64", "aarch64", "arm", "linux", "Linux"};

bool hasImageName(std::string_view name) {
    if (name.size() <= imageEnding.size())
        return false;
    const std::string_view end = name.substr(name.size() - imageEnding.size());
    return std::equal(end.begin(), end.end(), imageEnding.begin(),
                      [](char a, char b) { return lowered(a) == b; });
}

bool isImage(const std::string &path, const FileStatus &status) {
    if (status.kind != FileKind::regularFile)
        return false;
    return hasImageName(path) ||
           (status.length >= leastImageBytes && isReportedExecutable(path) && isAppImage(path));
}

void findImages(const std::string &folder, int levels, std::unordered_set<FileIdentity> &known,
                std::vector<std::string> &found) {
    std::vector<std::string> names = namesIn(folder).value_or(std::vector<std::string>());
    if (names.size() > mostEntries)
        std::erase_if(names, [](const std::string &name) { return !hasImageName(name); });
    std::sort(names.begin(), names.end());
    for (const std::string &name : names) {
        const std::string path = joinPath(folder, name);
        const std::optional<FileStatus> status = fileStatus(path);
        if (!status)
            continue;
        if (isImage(path, *status)) {
            if (known.insert(status->identity).second)
                found.push_back(path);
        } else if (status->kind == FileKind::directory && levels > 1 && !name.starts_with('.')) {
            findImages(path, levels - 1, known, found);
        }
    }
}

/// Where the version or the processor begins in a file name such as "Foo-1.2-x86_64".
std::size_t endOfName(std::string_view name) {
    for (std::size_t at = 1; at + 1 < name.size(); ++at) {
        const std::string_view rest = name.substr(at + 1);
        const bool isVersion = std::isdigit(static_cast<unsigned char>(rest[0])) != 0 ||
                               (lowered(rest[0]) == 'v' && rest.size() > 1 &&
                                std::isdigit(static_cast<unsigned char>(rest[1])) != 0);
        const bool isProcessor = std::any_of(std::begin(systemWords), std::end(systemWords),
                                             [&](std::string_view word) { return rest.starts_with(word); });
        if (std::string_view("-_ ").find(name[at]) != std::string_view::npos && (isVersion || isProcessor))
            return at;
    }
    return name.size();
}

/// The version in a file name: digits and dots after the name; empty where there is none.
std::string versionIn(std::string_view rest) {
    const std::size_t start = rest.find_first_of("0123456789");
    if (start > 2) // or nowhere
        return "";
    return std::string(rest.substr(start, rest.find_first_of("-_ ", start) - start));
}

FoundApp imageAt(const std::string &path) {
    const FileURL url(path);
    const std::string_view file = url.fileName();
    const std::string_view base =
        hasImageName(file) ? file.substr(0, file.size() - imageEnding.size()) : file;
    const std::size_t end = endOfName(base);
    FoundApp found{InstalledApp{.url = url,
                                .name = std::string(base.substr(0, end)),
                                .bundleID = {},
                                .version = {},
                                .lastUsed = {},
                                .pin = pinOf(url),
                                .kind = AppKind::appImage}};
    if (std::string version = versionIn(base.substr(end)); !version.empty())
        found.app.version = std::move(version);
    found.app.names.names = {found.app.name};
    found.app.names.files = {path};
    return found;
}

} // namespace

bool isAppImage(const std::string &path) {
    FileReader reader(path);
    std::array<char, 11> buffer{};
    if (!reader.isOpen())
        return false;
    const std::string_view start = reader.read(buffer).value_or(std::string_view());
    return start.size() == buffer.size() &&
           start.starts_with("\x7F"
                             "ELF") &&
           start.substr(8, 2) == "AI" && (start[10] == 1 || start[10] == 2);
}

std::vector<FoundApp> appImages(const DesktopPlaces &places, const std::vector<DesktopEntry> &entries) {
    std::unordered_set<FileIdentity> known;
    std::vector<std::string> paths;
    for (const std::string &folder : places.appImages)
        findImages(folder, levelsOfImages, known, paths);
    std::vector<FoundApp> apps;
    for (const std::string &path : paths) {
        FoundApp found = imageAt(path);
        for (const DesktopEntry &entry : entries)
            if (const std::string program = entry.program();
                !entry.name.empty() && program.starts_with('/') && places.placed(program) == path) {
                addEntry(found, entry, true);
                found.app.bundleID = entry.id;
                std::erase(found.app.names.programs, std::string(FileURL(path).fileName()));
                if (!entry.version.empty())
                    found.app.version = entry.version;
            }
        apps.push_back(std::move(found));
    }
    return apps;
}

} // namespace brimvale::linuxApps
