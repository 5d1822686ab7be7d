#include "Support/TemporaryFolder.h"

#include "Base/Text.h"

#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace brimvale::testing {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
    : path_(FileURL(fs::canonical(fs::temp_directory_path()).string())
                .standardized()
                .appending("brimvale-XXXXXX")
                .path()) {
    if (mkdtemp(path_.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), path_);
}

namespace {

constexpr std::string_view beingRemoved = ".being-removed-";

/// The names in a folder.
std::vector<std::string> namesIn(int folder) {
    std::vector<std::string> names;
    DIR *stream = fdopendir(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (stream == nullptr)
        return names;
    while (const dirent *entry = readdir(stream)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            names.push_back(name);
    }
    closedir(stream);
    return names;
}

/// Empties a folder whose tree may be deeper than paths are long and may hold folders without rights: what
/// lies two levels down is moved up until nothing is left.
void empty(const std::string &path) {
    const int top = open(path.c_str(), O_RDONLY | O_DIRECTORY);
    std::vector<std::string> waiting;
    int count = 0;
    const auto isCleared = [&](int folder, const std::string &name) {
        if (folder == top && name.starts_with(beingRemoved))
            return false; // waiting
        if (unlinkat(folder, name.c_str(), 0) == 0)
            return true;
        const std::string moved = std::string(beingRemoved) + std::to_string(count++);
        const auto moveUp = [&] { return renameat(folder, name.c_str(), top, moved.c_str()) == 0; };
        // A mount point stays as it is: it shows a folder that is not ours.
        if (!moveUp() && !(errno == EACCES && fchmodat(folder, name.c_str(), 0700, 0) == 0 && moveUp()))
            return false;
        waiting.push_back(moved);
        return true;
    };
    const auto clear = [&](int folder) {
        fchmod(folder, 0700);
        // Again and again, because a list may be incomplete if the folder has changed before.
        for (bool isAnyCleared = true; isAnyCleared;) {
            isAnyCleared = false;
            for (const std::string &name : namesIn(folder))
                isAnyCleared = isCleared(folder, name) || isAnyCleared;
        }
    };
    clear(top);
    while (!waiting.empty()) {
        const std::string name = waiting.back();
        waiting.pop_back();
        const int folder = openat(top, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
        if (folder >= 0) {
            clear(folder);
            close(folder);
        }
        unlinkat(top, name.c_str(), AT_REMOVEDIR);
    }
    close(top);
}

} // namespace

TemporaryFolder::~TemporaryFolder() {
    empty(path_);
    rmdir(path_.c_str());
}

std::string TemporaryFolder::makeFolder(std::string_view inside) const {
    fs::create_directories(path(inside));
    return path(inside);
}

std::string TemporaryFolder::makeFile(std::string_view inside, std::int64_t bytes) const {
    return writeFile(inside, std::string(static_cast<std::size_t>(bytes), 'x'));
}

std::string TemporaryFolder::writeFile(std::string_view inside, std::string_view content) const {
    const std::string file = path(inside);
    fs::create_directories(fs::path(file).parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << content;
    stream.close();
    if (!stream)
        throw std::runtime_error("could not write " + file);
    return file;
}

std::string TemporaryFolder::possibleName(std::string_view name) const {
    std::error_code error;
    fs::create_directory(path(name), error);
    if (error)
        return displayText(name);
    fs::remove(path(name));
    return std::string(name);
}

std::string TemporaryFolder::makeScript(std::string_view inside, std::string_view commands) const {
    const std::string file = writeFile(inside, "#!/bin/sh\n" + std::string(commands) + "\n");
    fs::permissions(file, fs::perms::owner_all);
    return file;
}

std::string TemporaryFolder::makeLink(std::string_view inside, std::string_view target) const {
    fs::create_directories(fs::path(path(inside)).parent_path());
    fs::create_symlink(target, path(inside));
    return path(inside);
}

bool isThere(const std::string &path) {
    return fs::exists(fs::symlink_status(path));
}

std::string contentOf(const std::string &path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::int64_t allocatedBytes(const std::string &path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        throw std::system_error(errno, std::generic_category(), path);
    return status.st_blocks * 512;
}

} // namespace brimvale::testing
