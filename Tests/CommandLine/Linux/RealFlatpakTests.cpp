#include "CommandLine/Program.h"
#include "Platform/ProcessRunner.h"
#include "Support/SampleDesktop.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brimvale::testing {

namespace {

using ::testing::HasSubstr;

/// Makes a repository with one Flatpak and installs it for the user. Flatpak asks the system's message bus
/// whether the user may install, so a bus of its own stands in where there is none.
constexpr const char *installation = R"(
set -e
flatpak=$(command -v flatpak) || exit 99
top=$1
export HOME=$top/home/user FLATPAK_SYSTEM_DIR=$top/system XDG_DATA_HOME=
mkdir -p "$top/usr/bin" "$top/build/files/bin" "$top/build/export/share/applications"
ln -s "$flatpak" "$top/usr/bin/flatpak"
printf '[Application]\nname=org.example.Real\nruntime=org.example.Platform/x86_64/stable\ncommand=real\n' >"$top/build/metadata"
printf '#!/bin/sh\n' >"$top/build/files/bin/real"
head -c 500000 /dev/urandom >"$top/build/files/data"
printf '[Desktop Entry]\nType=Application\nName=Real Thing\nExec=real\n' \
    >"$top/build/export/share/applications/org.example.Real.desktop"
flatpak build-export --disable-sandbox "$top/repository" "$top/build"
flatpak --user remote-add --no-gpg-verify local "$top/repository"
install='flatpak --user install -y --no-deps local org.example.Real'
$install || dbus-run-session -- sh -c "DBUS_SYSTEM_BUS_ADDRESS=\$DBUS_SESSION_BUS_ADDRESS $install"
)";

} // namespace

TEST(RealFlatpak, IsFoundAndRemovedWithItsData) {
    const SampleDesktop desktop;
    desktop.makeFile("home/user/.var/app/org.example.Real/data/x", 50'000);
    const std::optional<ProcessResult> made =
        runProcess("/bin/sh", {"-c", installation, "sh", desktop.path()}, StandardError::withOutput);
    if (!made || !made->hasSucceeded())
        GTEST_SKIP() << "flatpak cannot install here";
    const auto run = [&](const std::vector<std::string> &arguments) {
        return runProgramOnLinux(desktop.path(), arguments, [&] {
            inHome(desktop.path("home/user"))();
            setenv("FLATPAK_SYSTEM_DIR", desktop.path("system").c_str(), 1);
            unsetenv("XDG_DATA_HOME");
        });
    };
    const std::string app = desktop.path("home/user/.local/share/flatpak/app/org.example.Real");
    const QJsonObject found = jsonIn(run({"apps", "--json"}))[0]["app"].toObject();
    EXPECT_EQ(found["name"], "Real Thing");
    EXPECT_EQ(found["origin"], "local");
    EXPECT_EQ(found["url"].toString().toStdString(), app);
    EXPECT_GT(found["knownSize"].toInteger(), 500'000);

    const Outcome outcome =
        run({"uninstall", "org.example.Real", "--with-leftovers", "--delete", "--yes", "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
    EXPECT_EQ(pathsIn(jsonIn(outcome)["succeeded"]),
              (std::vector<std::string>{app, desktop.path("home/user/.var/app/org.example.Real")}));
    EXPECT_FALSE(std::filesystem::exists(app));
    EXPECT_FALSE(std::filesystem::exists(desktop.path("home/user/.var/app/org.example.Real")));
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(
        desktop.path("home/user/.local/share/flatpak/exports/share/applications/org.example.Real.desktop"))));
    EXPECT_EQ(run({"apps"}).out, "No apps found.\n");
    EXPECT_THAT(run({"uninstall", "org.example.Real", "--yes"}).err, HasSubstr("neither an app"));
}

} // namespace brimvale::testing
