#include "Catalogs/Linux/CleanupSearch.h"

#include "Catalogs/Linux/Catalog.h"
#include "Platform/Folder.h"
#include "Platform/UserDirectories.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

constexpr const char *ownBaseFolders[] = {"$DATA", "$CONFIG", "$CACHE", "$STATE"};

bool isInBaseFolder(const std::string &place) {
    return std::any_of(std::begin(ownBaseFolders), std::end(ownBaseFolders),
                       [&](const char *base) { return place.starts_with(base); });
}

} // namespace

CleanupSearch::CleanupSearch(const Host &host, const RunningPrograms &running,
                             std::vector<std::string> elsewhere)
    : places_(host), running_(running), elsewhere_(std::move(elsewhere)),
      structural_(guardedPaths(host.home).structural) {
    for (const FileURL &folder : userDirectories(host.home).all)
        ofUser_.push_back(folder.path());
    for (const char *folder : {"/tmp", "/var/tmp"})
        ofUser_.push_back(places_.placed(folder));
}

/// Whether a variable or a link leads to a folder that holds more than the files of one program.
bool CleanupSearch::isForOthersToo(const std::string &place, const std::string &path) const {
    const auto have = [&](const std::vector<std::string> &paths) {
        return std::find(paths.begin(), paths.end(), path) != paths.end();
    };
    const bool isByVariable = place.starts_with('$'), isByLink = !have(places_.pathsOf(place));
    return (have(ofUser_) && (isByVariable || isByLink)) ||
           (have(structural_) && (isByLink || (isByVariable && !isInBaseFolder(place))));
}

std::vector<std::string> CleanupSearch::find(const std::vector<std::string> &places) {
    std::vector<std::string> found;
    for (const std::string &place : places)
        for (std::string &path : places_.take({place})) {
            if (isForOthersToo(place, path))
                continue;
            const std::optional<FileStatus> status = fileStatus(path);
            if (status && status->kind == FileKind::directory)
                finding_.roots.push_back(path);
            found.push_back(std::move(path));
        }
    return found;
}

std::shared_ptr<const ProgramSigns> CleanupSearch::signsOf(ProgramSigns program) const {
    if (program.name.empty())
        return nullptr;
    for (std::vector<std::string> *files : {&program.locks, &program.marks})
        for (const std::string &place : std::exchange(*files, {}))
            for (std::string &path : places_.pathsOf(place))
                files->push_back(std::move(path));
    return std::make_shared<const ProgramSigns>(std::move(program));
}

/// An item in the folder of a sandboxed application has the application's name before its own, if that is
/// known.
std::string CleanupSearch::nameInSandbox(const std::string &path) {
    for (const char *folder : {".var/app", "snap"}) {
        const std::string sandboxes = places_.host().home.appending(folder).path() + "/";
        if (!path.starts_with(sandboxes))
            continue;
        const std::string id =
            path.substr(sandboxes.size(), path.find('/', sandboxes.size()) - sandboxes.size());
        const std::string name = names_.of(id);
        if (name == id)
            return "";
        const bool isWhole = sandboxes.size() + id.size() == path.size();
        return isWhole ? name : name + ": " + std::string(FileURL(path).fileName());
    }
    return "";
}

void CleanupSearch::add(const std::string &path, CleanupNotes notes) {
    if (notes.name.empty())
        notes.name = nameInSandbox(path);
    notes.isInUse = notes.program && running_.has(*notes.program);
    if (notes.isInUse && notes.program->mustNotRun)
        notes.keptBecause = notes.program->name + " is running. Quit it, and measure again.";
    finding_.items.push_back({path, std::make_shared<const CleanupNotes>(std::move(notes))});
}

/// Adds the item if its rule allows it.
void CleanupSearch::addAllowed(const std::string &path, const CleanupPlaces &places, CleanupNotes notes) {
    if ((places.notOpen && running_.use(path)) || !allowsItem(*notes.rule, path))
        return;
    add(path, std::move(notes));
}

void CleanupSearch::add(const CleanupPlaces &places) {
    CleanupRule rule{.folder = "",
                     .takes = places.takes,
                     .leaves = places.leaves,
                     .leastDays = places.leastDays,
                     .ownFilesOnly = places.ownFilesOnly};
    CleanupNotes notes{.keptBecause = places.keptBecause,
                       .command = places.command,
                       .freesLess = places.freesLess,
                       .program = signsOf(places.program)};
    for (const std::string &path : find(places.places)) {
        if (!places.onlyWith.empty() && !fileStatus(joinPath(path, places.onlyWith)))
            continue;
        rule.folder = places.itself ? FileURL(path).parent().path() : path;
        notes.rule = std::make_shared<const CleanupRule>(rule);
        notes.name = places.app;
        if (places.itself) {
            addAllowed(path, places, notes);
            continue;
        }
        for (const std::string &name : namesIn(path).value_or(std::vector<std::string>())) {
            notes.name = places.app.empty() ? "" : places.app + ": " + name;
            if (allowsName(rule, name))
                addAllowed(joinPath(path, name), places, notes);
        }
    }
}

std::string realPathOf(const std::string &path) {
    std::error_code error;
    std::string real = std::filesystem::canonical(path, error).native();
    return error ? path : real;
}

} // namespace brimvale::linuxCatalog
