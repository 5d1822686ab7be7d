#include "CommandLine/Program.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brimvale::testing {

TEST(Check, RefusesUserFoldersFromXdgConfigHome) {
    const TemporaryFolder folder;
    const std::string home = folder.makeFolder("real/u");
    folder.makeFolder("real/u/Dokumente/letters");
    folder.makeFolder("real/u/Documents");
    folder.makeLink("home", "real");
    const std::string settings = "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n";
    constexpr const char *structural = " is a structural directory and is never removed.\n";
    const auto expectGuarded = [&](const std::string &given) {
        for (const char *system : {"linux", "macos"}) {
            const auto checked = [&](const std::string &path) {
                return runProgram({"--system", system, "check", path}, inHome(folder.path(given))).out;
            };
            for (const std::string &known : {home, folder.path("home/u")})
                EXPECT_EQ(checked(known + "/Dokumente"), known + "/Dokumente" + structural) << system;
            EXPECT_EQ(checked("Documents"), home + "/Documents" + structural) << system;
            EXPECT_EQ(checked("Dokumente/letters"), "ok\n") << system;
        }
    };
    {
        folder.writeFile("settings/user-dirs.dirs", settings);
        const EnvironmentVariable chosen("XDG_CONFIG_HOME", folder.path("settings"));
        expectGuarded("home/u");
    }
    const EnvironmentVariable none("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(runProgram({"check", "Dokumente"}, inHome(home)).out, "ok\n");
    folder.writeFile("real/u/.config/user-dirs.dirs", settings);
    expectGuarded("home/u");
    // The desktop may not have seen the variable, so the usual settings still guard.
    const EnvironmentVariable elsewhere("XDG_CONFIG_HOME", folder.path("nothing"));
    expectGuarded("home/u");
}

} // namespace brimvale::testing
