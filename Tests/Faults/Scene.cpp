#include "Faults/Scene.h"

#include "Support/OwnMounts.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/mount.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace brimvale::faults {

namespace fs = std::filesystem;

namespace {

std::string mountPoint; // NOLINT: the program has one

/// A folder that holds every name that a removal comes to while things are exchanged, and every kind of
/// entry.
void makeTree(const std::string &tree, const char *content) {
    for (const char *inside : {"/empty", "/1/2", "/inner/1", "/inner/2/3"})
        fs::create_directories(tree + inside);
    for (const char *file :
         {"/file", "/1/file", "/1/2/file", "/inner/file", "/inner/1/file", "/inner/2/3/file"})
        std::ofstream(tree + file) << content;
    fs::create_symlink("../file", tree + "/1/link");
    mkfifo((tree + "/inner/pipe").c_str(), 0600);
    fs::permissions(tree + "/1/file", fs::perms(0440));
}

constexpr const char *itemPath = "/way/place/Documents";
constexpr const char *innerPath = "/way/place/Documents/inner";

} // namespace

const std::array<Deed, 11> deedsAround = {{
    {"its parent for a link to another", Deed::exchange, "/way", "place", "/links", "other"},
    {"its parent for a link to the home", Deed::exchange, "/way", "place", "/links", "home"},
    {"its parent for another folder", Deed::exchange, "/way", "place", "", "other"},
    {"its parent moved away", Deed::move, "/way", "place", "/links", "place"},
    {"an ancestor for a link", Deed::exchange, "", "way", "/links", "otherway"},
    {"an ancestor for another folder", Deed::exchange, "", "way", "", "otherway"},
    {"the item for another", Deed::exchange, "/way/place", "Documents", "/other", "Documents"},
    {"the item for a link", Deed::exchange, "/way/place", "Documents", "/links", "sentinel"},
    {"the item for a file", Deed::exchange, "/way/place", "Documents", "/spare", "file"},
    {"the item for an empty folder", Deed::exchange, "/way/place", "Documents", "/spare", "empty"},
    {"the item moved away", Deed::move, "/way/place", "Documents", "/elsewhere", "item"},
}};

const std::array<Deed, 5> deedsInside = {{
    {"a folder in it for a link", Deed::exchange, itemPath, "1", "/fair", "a"},
    {"a deep folder in it for a link", Deed::exchange, innerPath, "2", "/fair", "b"},
    {"a folder in it moved away", Deed::move, itemPath, "inner", "/elsewhere", "inner"},
    {"a deep folder in it moved away", Deed::move, innerPath, "1", "/elsewhere", "1"},
    {"a mount in it", Deed::mount, itemPath, "inner", "", "sentinel"},
}};

const char *nameOf(ItemKind kind) {
    return kind == ItemKind::folder ? "folder" : kind == ItemKind::file ? "file" : "link";
}

Adversary::Adversary(const Scene &scene, const Deed &deed)
    : deed_(&deed), folder_(scene.folder(deed.folder)), otherFolder_(scene.folder(deed.otherFolder)),
      path_("/proc/self/fd/" + std::to_string(folder_) + "/" + deed.entry),
      otherPath_("/proc/self/fd/" + std::to_string(otherFolder_) + "/" + deed.otherEntry) {}

bool Adversary::act() const {
    if (deed_->kind == Deed::mount)
        return ::mount(otherPath_.c_str(), path_.c_str(), nullptr, MS_BIND, nullptr) == 0;
    const unsigned how = deed_->kind == Deed::exchange ? RENAME_EXCHANGE : RENAME_NOREPLACE;
    return renameat2(folder_, deed_->entry, otherFolder_, deed_->otherEntry, how) == 0;
}

bool Adversary::undo() const {
    if (deed_->kind == Deed::mount)
        return umount2(path_.c_str(), MNT_DETACH) == 0;
    const unsigned how = deed_->kind == Deed::exchange ? RENAME_EXCHANGE : RENAME_NOREPLACE;
    return renameat2(otherFolder_, deed_->otherEntry, folder_, deed_->entry, how) == 0;
}

void Scene::useMountPoint(const std::string &path) {
    mountPoint = path;
    setenv("HOME", (path + "/home").c_str(), 1);
    unsetenv("XDG_DATA_HOME");
}

const std::string &Scene::top() {
    return mountPoint;
}

Scene::Scene(ItemKind kind) {
    if (!testing::mountMemory(top()))
        throw std::system_error(errno, std::generic_category(), top());
    fs::permissions(top(), fs::perms(0755));
    for (const char *tree : {"/home/Documents", "/other/Documents", "/otherway/place/Documents", "/sentinel"})
        makeTree(top() + tree, "kept");
    for (const char *inside : {"/way/place", "/spare/empty", "/links", "/elsewhere", "/fair", "/backups"})
        fs::create_directories(top() + inside);
    for (const char *file : {"/spare/file", "/way/place/beside"})
        std::ofstream(top() + file) << "kept";
    for (const char *target : {"other", "home", "otherway", "sentinel"})
        fs::create_symlink(std::string("../") + target, top() + "/links/" + target);
    for (const char *link : {"/fair/a", "/fair/b"})
        fs::create_symlink("../sentinel", top() + link);
    if (kind == ItemKind::folder)
        makeTree(item(), "selected");
    else if (kind == ItemKind::file)
        std::ofstream(item()) << "selected";
    else
        fs::create_symlink(top() + "/sentinel", item());
}

Scene::~Scene() {
    unmountInside();
    umount2(top().c_str(), MNT_DETACH);
}

int Scene::folder(const std::string &inside) const {
    Descriptor &folder = open_[inside];
    if (!folder.isOpen())
        folder = Descriptor(open((top() + inside).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return folder.number();
}

void Scene::giveAway() const {
    constexpr uid_t nobody = 65534;
    for (const char *inside : {"", "/way", "/way/place", "/other", "/links", "/otherway"})
        static_cast<void>(fchownat(folder(inside), "", nobody, nobody, AT_EMPTY_PATH));
}

void Scene::unmountInside() {
    std::ifstream table("/proc/self/mountinfo");
    std::vector<std::string> points;
    for (std::string line; std::getline(table, line);) {
        std::array<char, 4096> point{};
        if (std::sscanf(line.c_str(), "%*s %*s %*s %*s %4095s", point.data()) == 1 &&
            std::string(point.data()).starts_with(top() + "/"))
            points.emplace_back(point.data());
    }
    for (; !points.empty(); points.pop_back())
        umount2(points.back().c_str(), MNT_DETACH);
}

} // namespace brimvale::faults
