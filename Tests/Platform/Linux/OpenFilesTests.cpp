#include "Platform/OpenFiles.h"

#include "Core/Reclaim/Reclaim.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;

using testing::TemporaryFolder;

/// The name of a program that uses the file; "" where none is known to.
std::string userOf(const std::string &path, const std::string &root = "/") {
    const StopFlag never;
    const OpenFiles used = filesInUse(never, root);
    const auto status = fileStatus(path);
    const auto found = status ? used.programs.find(status->identity) : used.programs.end();
    return found != used.programs.end() ? found->second : "";
}

Reclaim reclaimFor(const std::string &path) {
    ReclaimProgress progress;
    return reclaimOf({FileURL(path)}, progress);
}

/// Another program, called "holder", that has done something and now waits.
class Holder {
public:
    explicit Holder(const std::function<bool()> &hold) {
        std::array<int, 2> ready{};
        if (pipe(ready.data()) != 0)
            return;
        process_ = fork();
        if (process_ == 0) {
            prctl(PR_SET_NAME, "holder");
            const bool holds = hold();
            static_cast<void>(write(ready[1], &holds, sizeof(holds)));
            pause();
            _exit(0);
        }
        isReady_ = read(ready[0], &isReady_, sizeof(isReady_)) == sizeof(isReady_) && isReady_;
        close(ready[0]);
        close(ready[1]);
    }
    ~Holder() {
        if (process_ <= 0)
            return;
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;

    [[nodiscard]] bool isReady() const { return isReady_; }

private:
    pid_t process_ = -1;
    bool isReady_ = false;
};

bool opens(const std::string &path) {
    return open(path.c_str(), O_RDONLY) >= 0;
}

/// Maps the file, and closes it.
bool maps(const std::string &path) {
    const int file = open(path.c_str(), O_RDONLY);
    const void *memory = mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE, file, 0);
    close(file);
    return memory != MAP_FAILED;
}

} // namespace

TEST(OpenFiles, AreTheSameByAnotherName) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string marked = folder.makeFile("file (deleted)", 5000);
        for (const char *name : {"opened", "mapped"}) {
            folder.makeFile(name, 5000);
            fs::create_hard_link(folder.path(name), folder.path(name) + " again");
        }
        const Holder holder(
            [&] { return opens(marked) && opens(folder.path("opened")) && maps(folder.path("mapped")); });
        ASSERT_TRUE(holder.isReady());
        fs::remove(folder.path("opened"));
        fs::remove(folder.path("mapped"));
        EXPECT_EQ(userOf(marked), "holder");
        EXPECT_EQ(userOf(folder.path("opened again")), "holder");
        EXPECT_EQ(userOf(folder.path("mapped again")), "holder");
        EXPECT_EQ(userOf(folder.makeFile("other", 5000)), "");
    });
}

TEST(OpenFiles, AreMappedByProgramsThatSeeOtherMounts) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string file = folder.makeFile("real/file", 5000), view = folder.makeFolder("view");
        folder.makeFile("view/file", 5000);
        const Holder holder([&] {
            return testing::ownMounts() && testing::mountAlsoAt(folder.path("real"), view) &&
                   maps(view + "/file");
        });
        if (!holder.isReady())
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(userOf(file), "holder");
        EXPECT_EQ(userOf(view + "/file"), "") << "another file has this path here";
        EXPECT_EQ(reclaimFor(file).freesAtMost(), 0);
    });
}

TEST(OpenFiles, AreThoseOfTheKernelToo) {
    const TemporaryFolder folder;
    const std::string swap = folder.makeFile("swap file", 5000), image = folder.makeFile("disk image", 5000);
    folder.writeFile("root/proc/swaps", "Filename Type Size Used Priority\n" + folder.path("swap\\040file") +
                                            " file 4 0 -2\n/dev/sda2 partition 9 0 -3\n");
    folder.writeFile("root/sys/block/loop999/loop/backing_file", image + "\n");
    folder.writeFile("root/sys/block/loop998/loop/backing_file", folder.path("gone") + " (deleted)\n");
    EXPECT_EQ(userOf(swap, folder.path("root")), "swap");
    EXPECT_EQ(userOf(image, folder.path("root")), "loop999");
    testing::inChild([] {
        const TemporaryFolder disk;
        if (!testing::ownMounts() || !testing::mountExt4(disk.makeFolder("volume")))
            GTEST_SKIP() << "there is no ext4 here";
        const std::string used = disk.path("volume.image"), other = disk.path("other");
        EXPECT_THAT(userOf(used), ::testing::StartsWith("loop"));
        EXPECT_EQ(reclaimFor(used).freesAtMost(), 0);
        fs::create_hard_link(used, other);
        fs::remove(used);
        EXPECT_THAT(userOf(other), ::testing::StartsWith("loop"))
            << "the device knows the file, not its name";
    });
}

TEST(OpenFiles, MayBeOpenThroughAnOverlay) {
    testing::inChild([] {
        const TemporaryFolder folder;
        for (const char *name : {"upper", "work", "merged"})
            folder.makeFolder(name);
        const std::string upper = folder.makeFile("upper/inner/file", 5000);
        const std::string lower = folder.makeFile("low:er/file", 6000), other = folder.makeFile("uppe", 5000);
        folder.makeLink("way", "upper");
        const std::string layers = "lowerdir=" + folder.path("low\\:er") + ",upperdir=" + folder.path("way") +
                                   ",workdir=" + folder.path("work");
        if (!testing::ownMounts() || geteuid() != 0 ||
            mount("overlay", folder.path("merged").c_str(), "overlay", 0, layers.c_str()) != 0)
            GTEST_SKIP() << "there is no overlay here";
        const Holder holder([&] { return opens(folder.path("merged/inner/file")); });
        for (const std::string &path : {upper, lower, folder.path("upper")}) {
            const Reclaim found = reclaimFor(path);
            EXPECT_EQ(found.freesNow + found.inUse, 0) << path;
            EXPECT_GT(found.mayFree, 0) << path;
        }
        EXPECT_EQ(reclaimFor(other).mayFree, 0) << "beside the layers";
    });
}

TEST(OpenFiles, OfOthersAreUnknownToAnOrdinaryUser) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of others";
    const TemporaryFolder folder;
    const std::string root = folder.makeFile("item/root", 50'000), own = folder.makeFile("item/own", 90'000);
    fs::permissions(folder.path(), fs::perms(0755));
    testing::inChild([&] {
        const Reclaim all = reclaimFor(folder.path("item"));
        EXPECT_EQ(all.unaskedPrograms, 0);
        EXPECT_EQ(all.mayFree, 0);
        constexpr unsigned nobody = 65534;
        ASSERT_EQ(chown(own.c_str(), nobody, nobody), 0);
        testing::becomeOrdinaryUser();
        const Reclaim found = reclaimFor(folder.path("item"));
        EXPECT_GT(found.unaskedPrograms, 0);
        EXPECT_EQ(found.mayFree, testing::allocatedBytes(root));
        EXPECT_EQ(found.freesNow, testing::allocatedBytes(own));
    });
}

} // namespace brimvale
