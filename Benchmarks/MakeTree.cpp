// Makes the trees that the benchmarks measure. The usual one has many small files in many folders, all under
// one top-level folder, so that nothing but the depth of the tree can be shared out between threads.
//
//     MakeTree [--in FOLDER] [--files N] [--folders N] [--shape usual|empty|chain|flat]
//
// The other shapes: "empty" has empty files only, which are made quickly; "chain" is one folder in the other,
// each with one empty file, --folders of them; "flat" is one folder with all files, which are empty.
//
// The same numbers make the same tree everywhere. A tree is made once: a stamp beside it says that it is
// complete, and one that was broken off is completed. Prints the tree's path.

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

/// Goes into the names of tree and stamp; to be raised whenever another tree comes out of the same numbers.
constexpr int recipe = 1;

constexpr int deepest = 12;
constexpr int kibibyte = 1024;

enum class Shape { usual, empty, chain, flat };
constexpr std::array<std::string_view, 4> shapeNames = {"usual", "empty", "chain", "flat"};

struct Settings {
    Shape shape = Shape::usual;
    std::string folder;
    std::size_t files = 460'000;
    std::size_t folders = 40'000;
};

struct FolderPlan {
    std::size_t parent;
    int depth;
    std::size_t files;
};

/// Numbers that are the same with every library, which those of <random>'s distributions are not.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine_(seed) {}

    /// At least 0, below `limit`.
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(engine_() % limit); }
    bool percent(std::size_t chance) { return below(100) < chance; }
    bool perMille(std::size_t chance) { return below(1000) < chance; }

private:
    std::mt19937_64 engine_;
};

[[noreturn]] void fail(const std::string &what) {
    std::perror(("MakeTree: " + what).c_str());
    std::exit(1);
}

std::string nameFrom(Dice &dice, std::size_t number) {
    static constexpr std::array<std::string_view, 24> words = {
        "account", "archive", "backup", "build",  "cache",   "chapter", "data",   "draft",
        "export",  "figure",  "index",  "letter", "library", "log",     "module", "notes",
        "packet",  "photo",   "report", "sample", "session", "source",  "test",   "x"};
    std::string name(words[dice.below(words.size())]);
    if (dice.percent(40))
        name.append("_").append(words[dice.below(words.size())]);
    return name.append("-").append(std::to_string(number));
}

/// Most folders hold a handful of files, some a few dozen, a few a hundred and very few thousands.
std::size_t filesFrom(Dice &dice) {
    if (dice.below(4000) == 0)
        return 1500 + dice.below(4000);
    if (dice.percent(2))
        return 30 + dice.below(100);
    return dice.percent(20) ? 10 + dice.below(30) : dice.below(10);
}

/// Folders in an order in which each comes after its parent. The first is the only one at the top.
std::vector<FolderPlan> plan(const Settings &settings, Dice &dice) {
    constexpr std::size_t branches = 8;
    std::vector<FolderPlan> folders{{0, 1, 0}};
    std::size_t left = settings.files;
    while (folders.size() < settings.folders) {
        std::size_t parent = 0;
        if (folders.size() > branches)
            do
                parent = 1 + dice.below(folders.size() - 1);
            while (folders[parent].depth == deepest);
        const std::size_t files = std::min(left, filesFrom(dice));
        left -= files;
        folders.push_back({parent, folders[parent].depth + 1, files});
    }
    for (; left > 0; --left)
        ++folders[dice.below(folders.size())].files;
    return folders;
}

/// Mostly one block of 4 KiB or none, now and then two, rarely some mebibytes.
std::size_t sizeFrom(Dice &dice) {
    if (dice.below(6000) == 0)
        return 1024 * kibibyte + dice.below(3 * 1024 * kibibyte);
    if (dice.percent(20))
        return 0;
    return 1 + dice.below(dice.percent(92) ? 4 * kibibyte : 8 * kibibyte);
}

void makeFile(int folder, const std::string &name, std::size_t size, const std::vector<char> &contents) {
    const int file = openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0 || write(file, contents.data(), size) != static_cast<ssize_t>(size) || close(file) != 0)
        fail(name);
}

/// One folder's files, some of which are links of both kinds to the file made before.
void makeFiles(int folder, std::size_t count, Dice &dice, const std::vector<char> &contents, bool areEmpty) {
    static constexpr std::array<std::string_view, 6> suffixes = {".txt", ".dat",  ".json",
                                                                 ".o",   ".jpeg", ".h"};
    std::string earlier;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name = nameFrom(dice, i).append(suffixes[dice.below(suffixes.size())]);
        int result = 0;
        if (!earlier.empty() && dice.perMille(5))
            result = linkat(folder, earlier.c_str(), folder, name.c_str(), 0);
        else if (!earlier.empty() && dice.perMille(10))
            result = symlinkat(earlier.c_str(), folder, name.c_str());
        else
            makeFile(folder, earlier = name, areEmpty ? 0 : sizeFrom(dice), contents);
        if (result != 0 && errno != EEXIST)
            fail(name);
    }
}

void makeTree(const std::string &top, const Settings &settings) {
    Dice dice(20'260'101);
    const std::vector<FolderPlan> folders = plan(settings, dice);
    const std::vector<char> contents(4096 * kibibyte, 'b');
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < folders.size(); ++i) {
        paths.push_back((i == 0 ? top : paths[folders[i].parent]) + "/" + nameFrom(dice, i));
        if (mkdir(paths[i].c_str(), 0755) != 0 && errno != EEXIST)
            fail(paths[i]);
    }
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const int folder = open(paths[i].c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder < 0)
            fail(paths[i]);
        makeFiles(folder, folders[i].files, dice, contents, settings.shape == Shape::empty);
        close(folder);
    }
}

int openFolder(int parent, const char *name) {
    const int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        fail(name);
    return folder;
}

/// Made relative to the folder before, because the paths become longer than the system takes.
void makeChain(const std::string &top, std::size_t folders) {
    int folder = openFolder(AT_FDCWD, top.c_str());
    for (std::size_t i = 0; i < folders; ++i) {
        makeFile(folder, "file", 0, {});
        if (mkdirat(folder, "folder", 0755) != 0 && errno != EEXIST)
            fail("folder");
        const int next = openFolder(folder, "folder");
        close(folder);
        folder = next;
    }
    close(folder);
}

void makeFlat(const std::string &top, std::size_t files) {
    const std::string path = top + "/folder";
    if (mkdir(path.c_str(), 0755) != 0 && errno != EEXIST)
        fail(path);
    const int folder = openFolder(AT_FDCWD, path.c_str());
    Dice dice(20'260'101);
    for (std::size_t i = 0; i < files; ++i)
        makeFile(folder, nameFrom(dice, i), 0, {});
    close(folder);
}

void make(const std::string &top, const Settings &settings) {
    if (settings.shape == Shape::chain)
        makeChain(top, settings.folders);
    else if (settings.shape == Shape::flat)
        makeFlat(top, settings.files);
    else
        makeTree(top, settings);
}

/// Says what the tree is, so that each is made once.
std::string nameOf(const Settings &settings) {
    std::string name = "tree-" + std::to_string(settings.files) + "-in-" + std::to_string(settings.folders);
    if (settings.shape != Shape::usual)
        name.append("-").append(shapeNames[static_cast<std::size_t>(settings.shape)]);
    return name.append("-v").append(std::to_string(recipe));
}

std::string cacheFolder() {
    if (const char *cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && cache[0] == '/')
        return cache;
    const char *home = std::getenv("HOME");
    return home != nullptr ? std::string(home) + "/.cache" : std::filesystem::temp_directory_path().string();
}

Settings settingsFrom(int count, char **arguments) {
    Settings settings{.folder = cacheFolder() + "/brimvale-bench"};
    for (int i = 1; i < count; i += 2) {
        const std::string_view option = arguments[i];
        const char *value = i + 1 < count ? arguments[i + 1] : "";
        if (option == "--in")
            settings.folder = value;
        else if (option == "--files")
            settings.files = std::strtoul(value, nullptr, 10);
        else if (option == "--folders")
            settings.folders = std::strtoul(value, nullptr, 10);
        else if (const auto *shape = std::find(shapeNames.begin(), shapeNames.end(), std::string_view(value));
                 option == "--shape" && shape != shapeNames.end())
            settings.shape = static_cast<Shape>(shape - shapeNames.begin());
        else
            settings.folders = 0;
    }
    if (settings.shape == Shape::chain)
        settings.files = settings.folders;
    else if (settings.shape == Shape::flat)
        settings.folders = 1;
    if (settings.folder.empty() || settings.folders == 0 || settings.files < settings.folders) {
        std::fputs(
            "usage: MakeTree [--in FOLDER] [--files N] [--folders N] [--shape usual|empty|chain|flat]\n",
            stderr);
        std::exit(2);
    }
    return settings;
}

} // namespace

int main(int argumentCount, char **arguments) {
    const Settings settings = settingsFrom(argumentCount, arguments);
    const std::string tree = settings.folder + "/" + nameOf(settings);
    const std::string stamp = tree + ".complete";
    if (!std::filesystem::exists(stamp)) {
        std::fprintf(stderr, "Making %zu files in %zu folders, once: %s\n", settings.files, settings.folders,
                     tree.c_str());
        std::error_code error;
        std::filesystem::create_directories(tree, error);
        make(tree, settings);
        sync(); // what is still to be written would disturb the first measurements
        std::ofstream(stamp).close();
    }
    std::puts(tree.c_str());
}
