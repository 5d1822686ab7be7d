#include "Platform/FileRemoval.h"

#include "Platform/FileOperation.h"
#include "Platform/RemovalObstacle.h"
#include "Support/AtPath.h"
#include "Support/ChildProcess.h"
#include "Support/HostileTree.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/fs.h>
#include <linux/seccomp.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::isThere;
using testing::listing;
using testing::TemporaryFolder;

/// The outcome of a removal in a word: "gone", or the two codes of its error.
std::string outcomeOf(const std::optional<FileError> &error) {
    if (!error)
        return "gone";
    const bool isCocoa = error->domain == FileError::Domain::cocoa;
    const bool hasPosix = error->underlying && error->underlying->domain == FileError::Domain::posix;
    return isCocoa && hasPosix
               ? std::to_string(error->code) + " over " + std::to_string(error->underlying->code)
               : "not an error of the file functions";
}

std::string outcome(const std::string &path) {
    return outcomeOf(testing::removeItemAt(FileURL(path)));
}

std::string over(int code, int errorNumber) {
    return std::to_string(code) + " over " + std::to_string(errorNumber);
}

/// Makes this process fail to open any folder to list it, with this error; false where that cannot be done.
bool failOpeningFolders(int error) {
    const auto number = static_cast<std::uint32_t>(SYS_openat);
    constexpr std::uint32_t kinds = O_DIRECTORY | O_PATH;
    constexpr auto offsetOfFlags = static_cast<std::uint32_t>(offsetof(seccomp_data, args) + 2 * 8);
    const auto answer = SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error);
    std::array<sock_filter, 7> program = {
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 4),
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetOfFlags),
        sock_filter BPF_STMT(BPF_ALU | BPF_AND | BPF_K, kinds),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, O_DIRECTORY, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, answer),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

} // namespace

TEST(FileRemoval, RemovesItemsOfEveryKindAndNothingElse) {
    const TemporaryFolder folder;
    const std::string outside = folder.makeFolder("outside");
    folder.writeFile("outside/inner/kept", "kept");
    for (unsigned seed = 1; seed <= 2; ++seed) {
        const TemporaryFolder tree;
        makeHostileTree(tree, seed, true);
        tree.makeLink("to folder", outside);
        tree.makeLink("below/to folder", outside + "/inner");
        fs::create_hard_link(folder.path("outside/inner/kept"), tree.path("below/second name"));
        if (geteuid() != 0) // what may not be read can be neither removed nor listed
            for (const auto &entry : fs::recursive_directory_iterator(tree.path()))
                if (!entry.is_symlink() && entry.is_directory())
                    fs::permissions(entry.path(), fs::perms::owner_all);
        EXPECT_EQ(outcome(tree.path()), "gone") << seed;
        EXPECT_FALSE(isThere(tree.path()));
        fs::create_directory(tree.path()); // which goes with the object
    }
    for (const std::string &item :
         {folder.makeFile("file"), folder.makeLink("link", outside), folder.makeLink("dangling", "nowhere"),
          folder.makeLink("link before slash", outside) + "/", folder.makeFolder("empty"),
          folder.makeFolder("slashed") + "//", folder.makeFile("caf\xE9 \xFF\n'\"\\")})
        EXPECT_EQ(outcome(item), "gone") << item;
    EXPECT_THAT(listing(folder.path()), ::testing::ElementsAre("/outside: folder", "/outside/inner: folder",
                                                               "/outside/inner/kept: file kept"));
}

TEST(FileRemoval, FollowsLinksInParentsOnly) {
    const TemporaryFolder folder;
    folder.writeFile("real/kept", "kept");
    folder.writeFile("real/doomed/file", "");
    folder.makeLink("way", "real");
    EXPECT_EQ(outcome(folder.path("way/doomed")), "gone");
    EXPECT_THAT(listing(folder.path()),
                ::testing::ElementsAre("/real: folder", "/real/kept: file kept", "/way: link to real"));
}

TEST(FileRemoval, RefusesPathsThatNameNoEntry) {
    const TemporaryFolder folder;
    folder.writeFile("a/b/file", "kept");
    const std::vector<std::string> before = listing(folder.path());
    const std::string inside = folder.path("a/b");
    for (const std::string &path : {inside + "/..", inside + "/.", inside + "/../", inside + "/./",
                                    inside + std::string("\0x", 2), folder.path("a") + std::string("/\0", 2)})
        EXPECT_EQ(outcome(path), over(512, EINVAL)) << path;
    EXPECT_EQ(outcome(folder.path("missing")), over(4, ENOENT));
    EXPECT_EQ(outcome(folder.path("missing/deeper")), over(4, ENOENT));
    EXPECT_EQ(outcome(inside + "/file/deeper"), over(512, ENOTDIR));
    EXPECT_EQ(outcome(folder.path(std::string(300, 'n'))), over(514, ENAMETOOLONG));
    EXPECT_EQ(listing(folder.path()), before);
}

TEST(FileRemoval, ErrorNamesTheRequestedItem) {
    const TemporaryFolder folder;
    const auto error = testing::removeItemAt(FileURL(folder.path("caf\xE9 “x”")));
    ASSERT_TRUE(error);
    EXPECT_EQ(
        error->localizedDescription,
        "“caf\uFFFD “x”” couldn’t be removed because it or a folder on the way to it no longer exists.");
}

TEST(FileRemoval, SaysInWordsWhyItFailed) {
    struct Case {
        int error;
        const char *words;
    };
    for (const Case &one : {Case{EIO, "the disk reported an error"}, Case{EMFILE, "too many files are open"},
                            Case{EBUSY, "the system is using it, or a volume is mounted in it"},
                            Case{EPROTO, "of a system error: Protocol error"}})
        EXPECT_EQ(fileError(FileOperation::remove, FileURL("/x/y"), one.error).localizedDescription,
                  std::string("“y” couldn’t be removed because ") + one.words + ".");
}

TEST(FileRemoval, FolderThatSeemsMissingIsNoSuccess) {
    const TemporaryFolder folder;
    folder.makeFile("item/inner/file");
    const std::string answer = testing::answerOfChild([&]() -> std::string {
        if (!failOpeningFolders(ENOENT))
            return "cannot fail";
        return outcome(folder.path("item"));
    });
    if (answer == "cannot fail")
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(answer, over(4, ENOENT));
    EXPECT_TRUE(isThere(folder.path("item/inner/file")));
}

TEST(FileRemoval, RemovesDeepTreeWithFewDescriptors) {
    constexpr int depth = 3'000;
    const TemporaryFolder outer;
    const std::string answer = testing::answerOfChild([&] {
        testing::keepTemporaryFoldersInMemory(outer.path());
        const TemporaryFolder folder;
        const std::string item = folder.makeFolder("item");
        testing::makeChain(item, std::string(200, 'd'), depth);
        testing::makeChain(folder.makeFolder("item/second"), "d", 100);
        const rlimit few{48, 48};
        setrlimit(RLIMIT_NOFILE, &few);
        RemovalProgress progress;
        const std::string end = outcomeOf(testing::removeItemAt(FileURL(item), &progress));
        return end + ", " + std::to_string(progress.entriesRemoved) + (isThere(item) ? ", but there" : "");
    });
    EXPECT_EQ(answer, "gone, " + std::to_string(3 * (depth + 100) + 2));
}

TEST(FileRemoval, RemovesPathsLongerThanPathMax) {
    const TemporaryFolder folder;
    const std::string name(200, 'n');
    testing::makeChain(folder.makeFolder("deep"), name, 60);
    std::string path = folder.path("deep");
    for (int i = 0; i < 40; ++i)
        path += "/" + name;
    EXPECT_EQ(outcome(path + "/sibling"), "gone");
    EXPECT_EQ(outcome(path + "/sibling"), over(4, ENOENT));
    EXPECT_EQ(outcome(path), "gone");
    EXPECT_EQ(outcome(path), over(4, ENOENT));
    EXPECT_EQ(outcome(folder.path("deep/" + name + "/file")), "gone");
}

TEST(FileRemoval, CancelStopsAndCountIsExact) {
    const TemporaryFolder folder;
    const std::string item = folder.makeFolder("item");
    for (int i = 0; i < 900; ++i)
        folder.makeFile("item/" + std::to_string(i % 30) + "/" + std::to_string(i));
    const auto entries = [&] { return std::distance(fs::recursive_directory_iterator(item), {}); };
    const auto before = entries();

    RemovalProgress progress;
    progress.cancelled.set();
    EXPECT_EQ(outcomeOf(testing::removeItemAt(FileURL(item), &progress)), over(3072, ECANCELED));
    EXPECT_EQ(outcomeOf(testing::removeItemAt(FileURL(item + "/0/0"), &progress)), over(3072, ECANCELED));
    EXPECT_EQ(entries(), before);

    progress.cancelled = StopFlag();
    std::thread watcher([&] {
        while (progress.entriesRemoved < 20)
            std::this_thread::yield();
        progress.cancelled.set();
    });
    const std::string end = outcomeOf(testing::removeItemAt(FileURL(item), &progress));
    watcher.join();
    if (end == "gone") { // the watcher came late
        EXPECT_EQ(progress.entriesRemoved, before + 1);
        return;
    }
    // What the figure says is gone, and not an entry more, now that it has ended.
    EXPECT_EQ(end, over(3072, ECANCELED));
    EXPECT_EQ(before - entries(), progress.entriesRemoved);
    progress.cancelled = StopFlag();
    EXPECT_EQ(outcomeOf(testing::removeItemAt(FileURL(item), &progress)), "gone");
    EXPECT_EQ(progress.entriesRemoved, before + 1);
}

TEST(FileRemoval, MissingPermissionKeepsEverything) {
    testing::inChild([] {
        testing::becomeOrdinaryUser();
        const TemporaryFolder folder;
        folder.makeFile("locked/file");
        folder.makeFile("locked/folder/file");
        folder.makeFile("item/inner/deep/file");
        folder.makeFile("unreadable/file");
        folder.makeFolder("unreadable and empty");
        fs::permissions(folder.path("locked"), fs::perms(0555));
        fs::permissions(folder.path("item/inner/deep"), fs::perms(0555));
        fs::permissions(folder.path("unreadable"), fs::perms(0333));
        fs::permissions(folder.path("unreadable and empty"), fs::perms(0000));
        const std::vector<std::string> before = listing(folder.path());

        for (const char *item :
             {"locked/file", "locked/folder", "locked", "item", "item/inner", "unreadable"})
            EXPECT_EQ(outcome(folder.path(item)), over(513, EACCES)) << item;
        EXPECT_EQ(testing::removeItemAt(FileURL(folder.path("item")))->localizedDescription,
                  "“item” couldn’t be removed because you don’t have permission to access it.");
        EXPECT_EQ(listing(folder.path()), before);
        // Neither the parent of an item nor an empty folder has to be readable.
        EXPECT_EQ(outcome(folder.path("unreadable/file")), "gone");
        EXPECT_EQ(outcome(folder.path("unreadable and empty")), "gone");
    });
}

TEST(FileRemoval, KeepsImmutableFolder) {
    const TemporaryFolder folder;
    folder.makeFile("item/immutable/file");
    const int immutable = open(folder.path("item/immutable").c_str(), O_RDONLY | O_DIRECTORY);
    int flags = 0;
    const auto mark = [&](int mask) {
        const int marked = (flags & ~(FS_IMMUTABLE_FL | FS_APPEND_FL)) | mask;
        return ioctl(immutable, FS_IOC_SETFLAGS, &marked) == 0;
    };
    if (ioctl(immutable, FS_IOC_GETFLAGS, &flags) != 0 || !mark(FS_IMMUTABLE_FL)) {
        close(immutable);
        GTEST_SKIP() << "files cannot be marked immutable here";
    }
    const std::string inside = outcome(folder.path("item/immutable/file"));
    const std::optional<FileError> parent = testing::removeItemAt(FileURL(folder.path("item")));
    const bool isWhole = isThere(folder.path("item/immutable/file"));
    const RemovalObstacle ofFolder = removalObstacle(FileURL(folder.path("item/immutable")));
    const RemovalObstacle ofFile = removalObstacle(FileURL(folder.path("item/immutable/file")));
    EXPECT_TRUE(mark(FS_APPEND_FL));
    const RemovalObstacle appendOnly = removalObstacle(FileURL(folder.path("item/immutable")));
    EXPECT_TRUE(mark(0));
    close(immutable);
    EXPECT_EQ(ofFolder, RemovalObstacle::immutable);
    EXPECT_EQ(ofFile, RemovalObstacle::immutableParent);
    EXPECT_EQ(appendOnly, RemovalObstacle::appendOnly);
    EXPECT_EQ(removalObstacle(FileURL(folder.path("item"))), RemovalObstacle::none);
    EXPECT_EQ(inside, over(513, EPERM));
    EXPECT_EQ(outcomeOf(parent), over(513, EPERM));
    EXPECT_EQ(parent ? parent->entry : "", folder.path("item/immutable"));
    EXPECT_TRUE(isWhole);
    EXPECT_EQ(outcome(folder.path("item")), "gone");
}

TEST(FileRemoval, NeverEntersMountPoints) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string elsewhere = folder.makeFolder("elsewhere");
        folder.writeFile("elsewhere/kept", "kept");
        folder.makeFolder("memory/mount");
        folder.makeFolder("same device/mount");
        folder.makeFile("a file/mount");
        folder.makeFolder("itself/inside");
        folder.makeFolder("mount as item");
        if (!testing::ownMounts() || !testing::mountMemory(folder.path("memory/mount")) ||
            !testing::mountAlsoAt(elsewhere, folder.path("same device/mount")) ||
            !testing::mountAlsoAt(elsewhere + "/kept", folder.path("a file/mount")) ||
            !testing::mountAlsoAt(folder.path("itself"), folder.path("itself/inside")) ||
            !testing::mountAlsoAt(elsewhere, folder.path("mount as item")))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.writeFile("memory/mount/folder/kept", "kept");
        for (const char *item : {"memory", "memory/mount", "same device", "same device/mount", "a file",
                                 "a file/mount", "itself", "mount as item"}) {
            EXPECT_EQ(outcome(folder.path(item)), over(512, EBUSY)) << item;
            EXPECT_TRUE(isThere(folder.path(item))) << item;
        }
        EXPECT_THAT(listing(elsewhere), ::testing::ElementsAre("/kept: file kept"));
        EXPECT_THAT(listing(folder.path("memory/mount")),
                    ::testing::ElementsAre("/folder: folder", "/folder/kept: file kept"));
        // An item on another device than the folder of a link to it is like any other.
        folder.makeLink("way", "memory/mount");
        EXPECT_EQ(outcome(folder.path("way/folder")), "gone");
    });
}

// Removing something in a lower folder copies the folder up, with a new time of creation.
TEST(FileRemoval, DeletesFoldersOfLowerLayers) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string memory = folder.makeFolder("memory"), overlay = folder.makeFolder("overlay");
        if (!testing::ownMounts() || !testing::mountMemory(memory))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.makeFile("memory/lower/item/one");
        folder.makeFile("memory/lower/item/inner/two");
        folder.makeFolder("memory/upper");
        folder.makeFolder("memory/work");
        const std::string layers =
            "lowerdir=" + memory + "/lower,upperdir=" + memory + "/upper,workdir=" + memory + "/work";
        // An ordinary user's overlay cannot mark what is removed, unless the kernel is told to do it
        // otherwise.
        if (geteuid() != 0 || mount("overlay", overlay.c_str(), "overlay", 0, layers.c_str()) != 0)
            GTEST_SKIP() << "there is no overlay here";
        EXPECT_EQ(outcome(overlay + "/item"), "gone");
        EXPECT_FALSE(isThere(overlay + "/item"));
    });
}

TEST(FileRemoval, ReportsReadOnlyVolume) {
    testing::inChild([] {
        const TemporaryFolder folder;
        folder.writeFile("real/item/kept", "kept");
        const std::string view = folder.makeFolder("view");
        if (!testing::ownMounts() || !testing::mountAlsoAt(folder.path("real"), view, true))
            GTEST_SKIP() << "mounting is not permitted here";
        for (const char *item : {"/item", "/item/kept"}) {
            const auto error = testing::removeItemAt(FileURL(view + item));
            EXPECT_EQ(outcomeOf(error), over(642, EROFS));
            EXPECT_THAT(error->localizedDescription,
                        ::testing::EndsWith(" because the volume is read only."));
        }
        EXPECT_THAT(listing(folder.path("real")),
                    ::testing::ElementsAre("/item: folder", "/item/kept: file kept"));
    });
}

} // namespace brimvale
