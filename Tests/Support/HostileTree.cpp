#include "Support/HostileTree.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <random>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace brimvale::testing {

namespace {

constexpr std::array<const char *, 10> names = {"plain",       "with space",    "line\nfeed", "tab\t'quote\"",
                                                "\x1b[31mred", "caf\xE9 latin", "\xFF\xFE",   "-rf",
                                                "caf\xC3\xA9", "back\\slash"};

class Maker {
public:
    Maker(const TemporaryFolder &folder, unsigned seed, bool hardLinks)
        : random_(seed), hardLinks_(hardLinks) {
        std::transform(names.begin(), names.end(), names_.begin(),
                       [&](const char *name) { return folder.possibleName(name); });
    }

    void fill(const TemporaryFolder &folder, const std::string &inside, int depth) {
        const int count = upTo(depth == 0 ? 14 : 9);
        for (int i = 0; i < count; ++i) {
            const std::string name =
                inside + names_.at(static_cast<std::size_t>(upTo(names_.size() - 1))) + std::to_string(i);
            if (depth < 6 && upTo(2) == 0) {
                folder.makeFolder(name);
                fill(folder, name + "/", depth + 1);
                if (upTo(12) == 0)
                    chmod(folder.path(name).c_str(), upTo(1) == 0 ? 0000 : 0400);
            } else {
                makeEntry(folder, name);
            }
        }
    }

private:
    int upTo(std::size_t most) { return std::uniform_int_distribution(0, static_cast<int>(most))(random_); }

    void makeEntry(const TemporaryFolder &folder, const std::string &name) {
        const std::string path = folder.path(name);
        switch (upTo(9)) {
        case 0:
            folder.makeLink(name, "nowhere");
            break;
        case 1:
            folder.makeLink(name, "..");
            break;
        case 2:
            folder.makeLink(name, path);
            break;
        case 3:
            mkfifo(path.c_str(), 0600);
            break;
        case 4:
            makeSparse(path);
            break;
        case 5:
            makeSocket(path);
            break;
        case 6:
            if (hardLinks_ && !files_.empty() &&
                link(files_.at(static_cast<std::size_t>(upTo(files_.size() - 1))).c_str(), path.c_str()) == 0)
                break;
            [[fallthrough]];
        default:
            files_.push_back(folder.makeFile(name, upTo(5) == 0 ? 70'000 : upTo(9000)));
            break;
        }
    }

    static void makeSparse(const std::string &path) {
        const int file = open(path.c_str(), O_CREAT | O_WRONLY, 0600);
        ftruncate(file, 1LL << 33);
        pwrite(file, "x", 1, 1 << 20);
        close(file);
    }

    static void makeSocket(const std::string &path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path.size() >= sizeof address.sun_path)
            return;
        path.copy(address.sun_path, path.size());
        const int socketDescriptor = socket(AF_UNIX, SOCK_STREAM, 0);
        bind(socketDescriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
        close(socketDescriptor);
    }

    std::mt19937 random_;
    bool hardLinks_;
    std::array<std::string, names.size()> names_;
    std::vector<std::string> files_;
};

} // namespace

void makeHostileTree(const TemporaryFolder &folder, unsigned seed, bool hardLinks) {
    Maker(folder, seed, hardLinks).fill(folder, "", 0);
    for (int i = 0; i < 300; ++i)
        folder.makeFile("wide/folder " + std::to_string(i) + "/file", i % 7 == 0 ? 5000 : 0);
    makeChain(folder.makeFolder("deep"), "d", 40);
}

void makeChain(const std::string &path, const std::string &name, int depth) {
    int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < depth; ++i) {
        const int file = openat(folder, "file", O_CREAT | O_WRONLY, 0600);
        [[maybe_unused]] const ssize_t written = write(file, "x", 1);
        close(file);
        mkdirat(folder, "sibling", 0755);
        mkdirat(folder, name.c_str(), 0755);
        const int next = openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(folder);
        folder = next;
    }
    close(folder);
}

} // namespace brimvale::testing
