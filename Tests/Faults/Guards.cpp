#include "Catalogs/Catalog.h"
#include "Core/Removal/RemovalGuards.h"
#include "Faults/Round.h"
#include "Faults/Scene.h"
#include "Platform/Accounts.h"
#include "Platform/Mounts.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <sys/mount.h>

namespace brimvale::faults {

namespace {

namespace fs = std::filesystem;

/// A guarded place, and the home with which the guards are made.
struct Guarded {
    std::string place;
    std::string home;

    [[nodiscard]] std::string described() const { return place + " with the home " + home; }
};

/// Other paths of a place: spellings, and ways through links and mounts on the scene.
std::vector<std::string> waysTo(const fs::path &place) {
    const std::string &path = place.native();
    const std::string name = place.filename().native(), folder = place.parent_path().native();
    const std::string above = folder == "/" ? "" : folder, top = Scene::top() + "/spare/";
    for (const char *inside : {"root", "parent", "self"})
        fs::create_directory(top + inside);
    fs::create_symlink("/", top + "link-to-root");
    fs::create_symlink(folder, top + "link");
    const auto show = [](const std::string &original, const std::string &at) {
        static_cast<void>(mount(original.c_str(), at.c_str(), nullptr, MS_BIND | MS_REC, nullptr));
    };
    show("/", top + "root");
    show(folder, top + "parent");
    if (fs::is_directory(place))
        show(path, top + "self");
    return {path,
            path + "/",
            "/" + path + "//",
            above + "//" + name,
            above + "/./" + name + "/.",
            above + "/" + name + "/../" + name,
            "/../.." + path,
            "/proc/self/root" + path,
            top + "link/" + name,
            top + "link/" + name + "/",
            top + "link-to-root" + path,
            top + "root" + path,
            top + "parent/" + name,
            fs::is_directory(place) ? top + "self" : path};
}

bool isAdmitted(const RemovalGuards &guards, const FileURL &path) {
    if (guards.check(path))
        return false;
    const auto opened = OpenedItem::at(path.standardized());
    const auto *item = std::get_if<OpenedItem>(&opened);
    if (item == nullptr || guards.check(*item, guards.locate()))
        return false;
    MountPoints mounts;
    for (const std::string &other : mounts.otherPathsOf(item->place().path()))
        if (guards.checkOtherPath(other, item->isFolder()))
            return false;
    // A removal refuses mounted folders themselves.
    return !(item->isFolder() && mounts.firstIn(item->place().path()));
}

void tryPlace(const Guarded &guarded, Findings &findings) {
    const Scene scene(ItemKind::folder);
    if (guarded.place.starts_with(Scene::top() + "/"))
        fs::create_directories(guarded.place);
    const RemovalGuards guards(Host{System::linux, FileURL(guarded.home), platformTools()});
    findings.countRun();
    for (const std::string &way : waysTo(guarded.place)) {
        std::error_code error;
        if (fs::symlink_status(way, error).type() == fs::file_type::not_found)
            continue; // no such mount or spelling here
        findings.countActions(1);
        if (isAdmitted(guards, FileURL(way)))
            findings.add(Fault::touched, way + " may be removed");
    }
}

/// The first entry in the first folder in that folder, or one further up.
fs::path deepEntry(fs::path entry) {
    for (int level = 0; level < 2; ++level) {
        std::error_code error;
        const fs::directory_iterator first(entry, error);
        if (error || fs::is_symlink(entry) || first == fs::directory_iterator())
            break;
        entry = first->path();
    }
    return entry;
}

/// One or two entries of every protected tree, where it has any.
std::vector<std::string> protectedEntries(const GuardedPaths &paths) {
    std::vector<std::string> entries;
    for (const std::string &tree : paths.protectedPrefixes) {
        std::error_code error;
        const fs::directory_iterator first(tree, error);
        if (error || first == fs::directory_iterator())
            continue;
        const std::string entry = first->path().native();
        if (std::none_of(paths.openPrefixes.begin(), paths.openPrefixes.end(),
                         [&](const std::string &open) { return (entry + "/").starts_with(open); }))
            for (const std::string &one : {entry, deepEntry(entry).native()})
                entries.push_back(one);
    }
    return entries;
}

/// All that is guarded and exists here or can be made on the scene.
std::vector<Guarded> allGuarded() {
    std::vector<Guarded> all;
    for (const std::string &home : {Scene::top() + "/home", std::string("/nowhere/home")}) {
        const GuardedPaths paths = catalogOf(System::linux).guardedPaths(FileURL(home));
        std::vector<std::string> places = paths.structural;
        for (const FileURL &account : accountHomes())
            places.push_back(account.path());
        for (const GuardedPlace &tree : paths.trees)
            for (const char *inside : {"", "item"})
                places.push_back(FileURL(tree.place + inside).standardized().path());
        for (std::string &entry : protectedEntries(paths))
            places.push_back(std::move(entry));
        for (std::string &place : places)
            if (place != "/" && (testing::isThere(place) || place.starts_with(Scene::top() + "/")))
                all.push_back({std::move(place), home});
    }
    return all;
}

} // namespace

std::string guards(Rounds rounds, Findings &findings) {
    runCases(allGuarded(), rounds, findings, tryPlace);
    return findings.figures("spellings", "guarded places");
}

} // namespace brimvale::faults
