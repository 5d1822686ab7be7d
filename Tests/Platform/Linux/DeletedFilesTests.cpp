#include "Platform/DeletedFiles.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace brimvale {

namespace {

/// What a program of this name holds.
std::int64_t heldBy(const std::string &program, const std::string &volume) {
    std::int64_t bytes = 0;
    for (const DeletedFiles::Holder &holder : deletedFilesOn(volume).holders)
        bytes += holder.program == program ? holder.bytes : 0;
    return bytes;
}

} // namespace

TEST(DeletedFiles, CountWhileTheyAreOpen) {
    testing::inChild([] {
        const std::string name = "holder" + std::to_string(getpid());
        prctl(PR_SET_NAME, name.c_str());
        const testing::TemporaryFolder folder;
        const std::string file = folder.makeFile("file", 3'000'000);
        const int first = open(file.c_str(), O_RDONLY), second = open(file.c_str(), O_RDONLY);
        EXPECT_EQ(heldBy(name, folder.path()), 0) << "it has a name";
        const std::int64_t bytes = testing::allocatedBytes(file);
        EXPECT_EQ(unlink(file.c_str()), 0);
        EXPECT_EQ(heldBy(name, folder.path()), bytes) << "once";
        EXPECT_EQ(heldBy(name, "/proc"), 0) << "on another volume";
        close(first);
        close(second);
        EXPECT_EQ(heldBy(name, folder.path()), 0);

        if (geteuid() != 0)
            return;
        EXPECT_EQ(deletedFilesOn("/").unknownPrograms, 0);
        testing::becomeOrdinaryUser();
        EXPECT_GT(deletedFilesOn("/").unknownPrograms, 0) << "the parent of this process is root's";
    });
}

} // namespace brimvale
