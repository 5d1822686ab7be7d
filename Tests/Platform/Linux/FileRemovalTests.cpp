#include "Platform/FileRemoval.h"

#include "Platform/RemovalObstacle.h"
#include "Support/ChildProcess.h"
#include "Support/HostileTree.h"
#include "Support/OwnMounts.h"
#include "Support/RemovalOutcome.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/fs.h>
#include <linux/seccomp.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brimvale {

namespace {

using testing::isThere;
using testing::listing;
using testing::outcomeOf;
using testing::outcomeOfRemoving;
using testing::over;
using testing::TemporaryFolder;

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

TEST(FileRemoval, FolderThatSeemsMissingIsNoSuccess) {
    const TemporaryFolder folder;
    folder.makeFile("item/inner/file");
    const std::string answer = testing::answerOfChild([&]() -> std::string {
        if (!failOpeningFolders(ENOENT))
            return "cannot fail";
        return outcomeOfRemoving(folder.path("item"));
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
    const std::string inside = outcomeOfRemoving(folder.path("item/immutable/file"));
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
    EXPECT_EQ(outcomeOfRemoving(folder.path("item")), "gone");
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
            EXPECT_EQ(outcomeOfRemoving(folder.path(item)), over(512, EBUSY)) << item;
            EXPECT_TRUE(isThere(folder.path(item))) << item;
        }
        EXPECT_THAT(listing(elsewhere), ::testing::ElementsAre("/kept: file kept"));
        EXPECT_THAT(listing(folder.path("memory/mount")),
                    ::testing::ElementsAre("/folder: folder", "/folder/kept: file kept"));
        // An item on another device than the folder of a link to it is like any other.
        folder.makeLink("way", "memory/mount");
        EXPECT_EQ(outcomeOfRemoving(folder.path("way/folder")), "gone");
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
        EXPECT_EQ(outcomeOfRemoving(overlay + "/item"), "gone");
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
