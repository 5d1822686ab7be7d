#include "Platform/FileRemoval.h"
#include "Platform/Posix/Descriptor.h"
#include "Support/AtPath.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace brimvale {

namespace {

using testing::listing;
using testing::TemporaryFolder;

/// An entry of an open folder, so that naming it never leads through one of the links.
struct Entry {
    int folder;
    std::string name;
};

/// While it lives, a thread exchanges each of the folders with its link and back, over and over.
class Exchanger {
public:
    Exchanger(const std::vector<Entry> &folders, const std::vector<Entry> &links)
        : thread_([this, folders, links] {
              while (!isEnding_) {
                  for (std::size_t i = 0; i < folders.size(); ++i)
                      if (renameat2(folders[i].folder, folders[i].name.c_str(), links[i].folder,
                                    links[i].name.c_str(), RENAME_EXCHANGE) == 0)
                          ++exchanges_;
                  std::this_thread::yield(); // or on few cores the removal would hardly get on
              }
          }) {}
    ~Exchanger() {
        isEnding_ = true;
        thread_.join();
    }
    Exchanger(const Exchanger &) = delete;
    Exchanger &operator=(const Exchanger &) = delete;

    [[nodiscard]] long exchanges() const { return exchanges_; }

private:
    std::atomic<bool> isEnding_ = false;
    std::atomic<long> exchanges_ = 0;
    std::thread thread_;
};

Descriptor opened(const std::string &path) {
    return Descriptor(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

/// A folder that holds all of the names that a removal is at while they are exchanged.
void makeItem(const TemporaryFolder &folder) {
    for (const char *file : {"file", "1/file", "1/2/file", "inner/file", "inner/1/file", "inner/2/3/file"})
        folder.makeFile(std::string("item/") + file);
}

/// Removals of the item while it and folders in it are exchanged for links to a sentinel. Answers what was
/// seen.
std::string removeWhileExchanging(const TemporaryFolder &folder) {
    const std::string sentinel = folder.makeFolder("sentinel");
    for (const char *file : {"file", "1/file", "1/2/file", "inner/file", "inner/1/file"})
        folder.writeFile(std::string("sentinel/") + file, "kept");
    const std::vector<std::string> before = listing(sentinel);
    const Descriptor top = opened(folder.path());

    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 5s;
    int rounds = 0, failures = 0;
    long exchanges = 0;
    // Five seconds, and however long it takes on a busy machine until one of them has met a link.
    for (; rounds < 5'000 && (failures == 0 || std::chrono::steady_clock::now() < end); ++rounds) {
        makeItem(folder);
        const Descriptor item = opened(folder.path("item")), inner = opened(folder.path("item/inner"));
        const std::vector<Entry> folders = {
            {top.number(), "item"}, {item.number(), "1"}, {item.number(), "inner"}, {inner.number(), "1"}};
        std::vector<Entry> links;
        for (const char *name : {"a", "b", "c", "d"}) {
            folder.makeLink(name, sentinel);
            links.push_back({top.number(), name});
        }
        {
            const Exchanger exchanger(folders, links);
            failures += testing::removeItemAt(FileURL(folder.path("item"))) ? 1 : 0; // may end either way
            exchanges += exchanger.exchanges();
        }
        if (listing(sentinel) != before)
            return "sentinel touched in round " + std::to_string(rounds);
        // Whatever is left at these places, folders or links, goes; with nobody around, all of it.
        for (const char *name : {"item", "a", "b", "c", "d"})
            std::filesystem::remove_all(folder.path(name));
    }
    std::printf("%d rounds, %ld exchanges, %d removals broken off\n", rounds, exchanges, failures);
    std::fflush(stdout);
    return failures > 0 ? "passed" : "no removal met an exchange";
}

} // namespace

TEST(FileRemoval, NeverFollowsFoldersSwappedForLinks) {
    const TemporaryFolder outer;
    const std::string answer = testing::answerOfChild([&] {
        testing::keepTemporaryFoldersInMemory(outer.path());
        return removeWhileExchanging(TemporaryFolder());
    });
    EXPECT_EQ(answer, "passed");
}

} // namespace brimvale
