#include "Core/Reclaim/Reclaim.h"

#include "Core/Removal/FreeSpace.h"
#include "Platform/FileSystem.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <linux/fs.h>
#include <optional>
#include <random>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TemporaryFolder;

constexpr std::int64_t MB = 1 << 20;

Reclaim reclaim(const std::vector<std::string> &paths) {
    std::vector<FileURL> items;
    for (const std::string &path : paths)
        items.emplace_back(path);
    ReclaimProgress progress;
    return reclaimOf(items, progress);
}

/// Bytes that no file system makes smaller or shares by itself.
std::string noise(std::int64_t bytes) {
    static std::minstd_rand random;
    std::string text(static_cast<std::size_t>(bytes), ' ');
    std::generate(text.begin(), text.end(), [] { return static_cast<char>(random() >> 8); });
    return text;
}

/// Clones so many bytes; all for 0.
[[nodiscard]] bool cloneFile(const std::string &from, const std::string &to, std::uint64_t bytes = 0) {
    const int source = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    const int copy = open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    file_clone_range range{.src_fd = source, .src_offset = 0, .src_length = bytes, .dest_offset = 0};
    const bool isCloned = source >= 0 && copy >= 0 && ioctl(copy, FICLONERANGE, &range) == 0;
    close(source);
    close(copy);
    return isCloned;
}

/// A volume with a part, as Btrfs has them, and there the folder "selected", whose files are held in every
/// way that its file system knows.
class Volume {
public:
    explicit Volume(bool (*mount)(const std::string &)) : isThere_(testing::ownMounts() && mount(top)) {
        if (isThere_ && mount == testing::mountBtrfs)
            isThere_ = testing::makeSubvolume(top, "part");
    }

    [[nodiscard]] bool isThere() const { return isThere_; }

    void makeFiles() const {
        folder.writeFile("volume/part/selected/plain", noise(5 * MB));
        folder.writeFile("volume/part/outside/linked", noise(3 * MB));
        std::filesystem::create_hard_link(part + "/outside/linked", part + "/selected/linked");
        folder.writeFile("volume/part/selected/one", noise(2 * MB));
        std::filesystem::create_hard_link(part + "/selected/one", part + "/selected/two");
    }

    void makeClones() const {
        folder.writeFile("volume/part/outside/original", noise(4 * MB));
        ASSERT_TRUE(cloneFile(part + "/outside/original", part + "/selected/clone"));
        folder.writeFile("volume/part/selected/twin", noise(6 * MB));
        ASSERT_TRUE(cloneFile(part + "/selected/twin", part + "/selected/twin2"));
    }

    /// What deleting the selection really frees, by the figures of the file system. XFS counts it a moment
    /// later.
    [[nodiscard]] std::int64_t freedByDeleting() const {
        syncFileSystem(top);
        const std::int64_t before = freeSpace(top).value_or(0);
        for (const auto &entry : std::filesystem::directory_iterator(part + "/selected"))
            std::filesystem::remove_all(entry);
        for (int i = 0; i < 10; ++i) {
            syncFileSystem(top);
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return freeSpace(top).value_or(0) - before;
    }

    const TemporaryFolder folder;
    const std::string top = folder.makeFolder("volume");
    const std::string part = top + "/part";

private:
    bool isThere_;
};

/// Folders and other records of the file system come to less than this.
constexpr std::int64_t leeway = MB / 2;

} // namespace

TEST(Reclaim, CountsEachFileOnceAndOnlyWithAllItsNames) {
    const TemporaryFolder folder;
    const std::string in = folder.makeFile("in/file", 50'000);
    folder.makeFile("out/file", 30'000);
    std::filesystem::create_hard_link(in, folder.path("in/again"));
    std::filesystem::create_hard_link(folder.path("out/file"), folder.path("in/elsewhere"));
    folder.makeLink("in/link", "../out");
    const std::int64_t once = testing::allocatedBytes(in);
    Reclaim found = reclaim({folder.path("in"), in, folder.path("in/../in/")});
    EXPECT_EQ(found.freesAtMost(), once);
    EXPECT_EQ(found.linkedElsewhere, testing::allocatedBytes(folder.path("out/file")));
    EXPECT_EQ(found.filesLinkedElsewhere, 1);
    EXPECT_EQ(found.unreadable, 0);
    found = reclaim({in});
    EXPECT_EQ(found.freesAtMost(), 0);
    EXPECT_EQ(found.linkedElsewhere, once);
    found = reclaim({folder.path("in/elsewhere"), folder.path("out/file")});
    EXPECT_EQ(found.linkedElsewhere, 0) << "two names in two selected items";
    EXPECT_EQ(reclaim({folder.path("missing")}).unreadable, 1);
}

TEST(Reclaim, StopsSoon) {
    const TemporaryFolder folder;
    folder.makeFile("file", 50'000);
    ReclaimProgress progress;
    progress.cancelled.set();
    EXPECT_EQ(reclaimOf({FileURL(folder.path())}, progress), Reclaim{});
}

TEST(Reclaim, NamesAProgramThatHasAFileOpen) {
    testing::inChild([] {
        const TemporaryFolder folder;
        const std::string file = folder.makeFile("file", 500'000), other = folder.makeFile("other", 500'000);
        std::array<int, 2> ready{};
        ASSERT_EQ(pipe(ready.data()), 0);
        const pid_t holder = fork();
        if (holder == 0) {
            prctl(PR_SET_NAME, "holder of files");
            const int opened = open(file.c_str(), O_RDONLY);
            static_cast<void>(write(ready[1], &opened, sizeof(opened)));
            pause();
            _exit(0);
        }
        int opened = -1;
        ASSERT_EQ(read(ready[0], &opened, sizeof(opened)), static_cast<ssize_t>(sizeof(opened)));
        const Reclaim found = reclaim({folder.path()});
        kill(holder, SIGKILL);
        waitpid(holder, nullptr, 0);
        EXPECT_EQ(found.inUse, testing::allocatedBytes(file));
        EXPECT_THAT(found.programs, ElementsAre(Reclaim::Part{"holder of files", found.inUse}));
        EXPECT_EQ(found.freesAtMost(), testing::allocatedBytes(other));
        EXPECT_THAT(reclaim({folder.path()}).programs, IsEmpty());
    });
}

TEST(Reclaim, IsWhatExt4Frees) {
    testing::inChild([] {
        const Volume volume(testing::mountExt4);
        if (!volume.isThere())
            GTEST_SKIP() << "there is no ext4 here";
        volume.makeFiles();
        const Reclaim found = reclaim({volume.part + "/selected"});
        EXPECT_EQ(found.mayFree, 0);
        EXPECT_EQ(found.linkedElsewhere, 3 * MB);
        EXPECT_NEAR(static_cast<double>(volume.freedByDeleting()), static_cast<double>(found.freesNow),
                    leeway);
    });
}

TEST(Reclaim, CountsOnceWhatTwoMountsShow) {
    testing::inChild([] {
        const Volume volume(testing::mountExt4);
        const std::string top = volume.top, other = volume.folder.makeFolder("other");
        if (!volume.isThere() || !testing::mountAlsoAt(top, other))
            GTEST_SKIP() << "there is no ext4 here";
        volume.makeFiles();
        volume.folder.writeFile("volume/part/selected/deep/file", noise(4 * MB));
        const std::string selected = volume.part + "/selected";
        const Reclaim once = reclaim({selected});
        EXPECT_EQ(once.linkedElsewhere, 3 * MB);
        const std::string again = other + "/part/selected";
        EXPECT_EQ(reclaim({selected, again}), once);
        EXPECT_EQ(reclaim({again + "/deep", again + "/one", again + "/linked", selected}), once)
            << "a part of it, whose parents have other paths";
        EXPECT_EQ(reclaim({selected + "/plain", again + "/plain"}), reclaim({selected + "/plain"}));
        ReclaimProgress progress;
        const LinkPlaces places{.folders = {other}, .areDeep = true};
        const Reclaim named = reclaimOf({FileURL(selected)}, progress, places);
        ASSERT_EQ(named.links.size(), 1U);
        EXPECT_EQ(named.links.front().otherName, other + "/part/outside/linked") << "not the selected one";
        EXPECT_NEAR(static_cast<double>(volume.freedByDeleting()), static_cast<double>(once.freesNow),
                    leeway);
    });
}

TEST(Reclaim, IsWhatXfsFrees) {
    testing::inChild([] {
        const Volume volume(testing::mountXfs);
        if (!volume.isThere())
            GTEST_SKIP() << "there is no XFS here";
        volume.makeFiles();
        volume.makeClones();
        syncFileSystem(volume.top);
        const Reclaim found = reclaim({volume.part + "/selected"});
        EXPECT_EQ(found.freesNow, 7 * MB);
        EXPECT_EQ(found.mayFree, 6 * MB) << "the twins, once";
        EXPECT_EQ(found.sharedElsewhere, 4 * MB);
        EXPECT_EQ(found.linkedElsewhere, 3 * MB);
        const auto freed = static_cast<double>(volume.freedByDeleting());
        EXPECT_NEAR(freed, static_cast<double>(found.freesAtMost()), leeway);
    });
}

TEST(Reclaim, IsWhatBtrfsFrees) {
    testing::inChild([] {
        const Volume volume(testing::mountBtrfs);
        if (!volume.isThere())
            GTEST_SKIP() << "there is no Btrfs here";
        volume.folder.writeFile("volume/part/selected/deep/kept", noise(7 * MB));
        syncFileSystem(volume.top);
        const std::string snapshot = volume.top + "/snapshot";
        ASSERT_TRUE(testing::makeSnapshot(volume.part, volume.top, "snapshot"));
        volume.makeFiles();
        volume.makeClones();
        syncFileSystem(volume.top);
        const Reclaim found = reclaim({volume.part + "/selected"});
        EXPECT_EQ(found.freesNow, 7 * MB);
        EXPECT_EQ(found.mayFree, 6 * MB);
        EXPECT_EQ(found.sharedElsewhere, 4 * MB);
        EXPECT_EQ(found.inSnapshots, 7 * MB);
        EXPECT_THAT(found.snapshots, ElementsAre(Reclaim::Part{snapshot, 7 * MB}));
        EXPECT_NEAR(static_cast<double>(volume.freedByDeleting()), static_cast<double>(found.freesAtMost()),
                    leeway);
    });
}

TEST(Reclaim, IsWhatBtrfsFreesOfTinyFilesAndSecondMounts) {
    testing::inChild([] {
        const Volume volume(testing::mountBtrfs);
        const std::string other = volume.folder.makeFolder("other");
        if (!volume.isThere() || !testing::mountAlsoAt(volume.part, other))
            GTEST_SKIP() << "there is no Btrfs here";
        volume.folder.writeFile("volume/part/selected/plain", noise(5 * MB));
        constexpr int files = 1'000;
        for (int i = 0; i < files; ++i)
            volume.folder.writeFile("volume/part/selected/tiny/" + std::to_string(i), noise(100));
        syncFileSystem(volume.top);
        const Reclaim found = reclaim({other + "/selected/tiny", volume.part + "/selected"});
        EXPECT_EQ(found, reclaim({volume.part + "/selected"}));
        EXPECT_EQ(found.freesNow, 5 * MB);
        EXPECT_EQ(found.mayFree, files * 4096);
        const std::int64_t freed = volume.freedByDeleting();
        EXPECT_GE(freed, found.freesNow);
        EXPECT_LE(freed, found.freesAtMost());
    });
}

TEST(Reclaim, KnowsThatBtrfsSharesWholeExtents) {
    testing::inChild([] {
        const Volume volume(testing::mountBtrfs);
        if (!volume.isThere())
            GTEST_SKIP() << "there is no Btrfs here";
        const std::string whole = volume.folder.writeFile("volume/part/outside/whole", noise(8 * MB));
        std::filesystem::create_directory(volume.part + "/selected");
        ASSERT_TRUE(cloneFile(whole, volume.part + "/selected/half", 4 * MB));
        ASSERT_TRUE(cloneFile(whole, volume.part + "/selected/block", 4096));
        std::filesystem::remove(whole);
        syncFileSystem(volume.top);
        const Reclaim found = reclaim({volume.part + "/selected"});
        EXPECT_EQ(found.sharedElsewhere, 0) << "nothing else has any of it";
        EXPECT_EQ(found.freesAtMost(), 4 * MB);
        EXPECT_GE(volume.freedByDeleting(), found.freesAtMost() - leeway);
    });
}

TEST(Reclaim, PromisesNothingOfWhatAnOverlayShows) {
    testing::inChild([] {
        const Volume volume(testing::mountExt4);
        const std::string shown = volume.folder.makeFolder("shown");
        if (!volume.isThere())
            GTEST_SKIP() << "there is no ext4 here";
        volume.folder.writeFile("volume/part/selected/file", noise(5 * MB));
        const std::string layers = "lowerdir=" + volume.part +
                                   ",upperdir=" + volume.folder.makeFolder("volume/upper") +
                                   ",workdir=" + volume.folder.makeFolder("volume/work");
        if (mount("overlay", shown.c_str(), "overlay", 0, layers.c_str()) != 0)
            GTEST_SKIP() << "there is no overlay here";
        syncFileSystem(volume.top);
        const Reclaim found = reclaim({shown + "/selected"});
        EXPECT_EQ(found.freesNow, 0);
        EXPECT_EQ(found.mayFree, 5 * MB);
        const std::int64_t before = freeSpace(volume.top).value_or(0);
        std::filesystem::remove_all(shown + "/selected");
        syncFileSystem(volume.top);
        EXPECT_NEAR(static_cast<double>(freeSpace(volume.top).value_or(0)), static_cast<double>(before),
                    leeway);
    });
}

TEST(FreeSpace, AsksEachFileSystemOnce) {
    testing::inChild([] {
        const Volume volume(testing::mountBtrfs);
        if (!volume.isThere() || !testing::makeSubvolume(volume.top, "other"))
            GTEST_SKIP() << "there is no Btrfs here";
        struct Actions final : testing::RecordingActions {
            int questions = 0;
            std::optional<std::int64_t> freeSpace(const FileURL &) override { return ++questions; }
        } actions;
        const FreeSpace space({FileURL(volume.part + "/one"), FileURL(volume.top + "/other/two"),
                               FileURL(volume.top + "/three")},
                              actions);
        EXPECT_EQ(actions.questions, 1) << "parts of it grow together";
        const FreeSpace both({FileURL(volume.part + "/one"), FileURL(volume.folder.path("four"))}, actions);
        EXPECT_EQ(actions.questions, 3);
    });
}

} // namespace brimvale
