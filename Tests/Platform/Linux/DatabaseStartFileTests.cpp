#include "Core/Backup/MessagesExport.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/SampleMessages.h"
#include "Support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace brimvale {

// The shell looks for its start file in the folder that the user database names, so that is what is mounted.
TEST(MessagesExport, IgnoresTheStartFileOfTheShell) {
    const testing::TemporaryFolder folder;
    const std::string database = folder.path("chat.db");
    if (!testing::makeDatabase(database, {{1, "Team", "id"}}, {{.text = "text"}}))
        GTEST_SKIP() << "sqlite3 is not installed";
    testing::inChild([&] {
        const passwd *user = getpwuid(getuid());
        if (user == nullptr || !testing::ownMounts() || !testing::mountMemory(user->pw_dir))
            GTEST_SKIP() << "mounting is not permitted here";
        std::ofstream(std::string(user->pw_dir) + "/.sqliterc") << ".headers on\n.mode box\n";
        const auto reading = MessagesExport::readChecked(database, 100);
        EXPECT_TRUE(reading.isComplete) << reading.reason;
        EXPECT_EQ(reading.conversations.size(), 1U);
    });
}

} // namespace brimvale
