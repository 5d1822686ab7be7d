// A confined program changes nothing outside the folder of its confinement.

#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Removal/Remover.h"
#include "Core/Trash/PuttingBack.h"
#include "Platform/Confinement.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <gmock/gmock.h>
#include <string>

namespace brimvale {

namespace {

using testing::contentOf;
using testing::EnvironmentVariable;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::isThere;
using testing::listing;
using ::testing::SizeIs;
using testing::TemporaryFolder;

/// A folder with a disk, to which the program is confined, beside other items.
class ConfinedProgram : public ::testing::Test {
protected:
    ConfinedProgram() {
        place.makeFile("disk/home/sam/inside", 10);
        place.makeFile("disk/home/sam/folder/file", 10);
        place.makeFile("outside/file", 10);
        place.makeLink("disk/home/sam/way out", place.path("outside"));
        EXPECT_TRUE(confine(Confinement{FileURL(place.path("disk")), platformTools(),
                                        [] { return std::vector<MountedVolume>(); }}));
    }
    ~ConfinedProgram() override { static_cast<void>(confine(std::nullopt)); }

    TemporaryFolder place;

private:
    EnvironmentVariable home_{"HOME", place.path("disk/home/sam")};
};

RemovalResult removed(const std::string &path, RemovalMode mode) {
    return Remover::remove(std::vector{FileURL(path)}, mode, nullptr, RemovalActions::platform());
}

} // namespace

TEST_F(ConfinedProgram, RemovesNothingOutside) {
    const auto before = listing(place.path("outside"));
    for (const std::string &path :
         {place.path("outside/file"), place.path("outside"), place.path("disk/home/sam/way out/file"),
          place.path("disk/home/sam/../../../outside/file")})
        for (const RemovalMode mode : {RemovalMode::trash, RemovalMode::deleteNow}) {
            const RemovalResult result = removed(path, mode);
            ASSERT_EQ(result.failed.size(), 1U) << path;
            EXPECT_THAT(result.failed.front().reason, HasSubstr("outside the sample")) << path;
        }
    EXPECT_EQ(listing(place.path("outside")), before);
    EXPECT_TRUE(isThere(place.path("disk/home/sam/inside")));
}

TEST_F(ConfinedProgram, RefusesOutsideEvenWhenTheGateIsPassed) {
    const auto item = OpenedItem::at(FileURL(place.path("outside/file")));
    RemovalActions &actions = RemovalActions::platform();
    EXPECT_TRUE(actions.removeItem(std::get<OpenedItem>(item), nullptr));
    const auto trashed = actions.moveToTrash(std::get<OpenedItem>(item));
    EXPECT_TRUE(std::holds_alternative<FileError>(trashed));
    EXPECT_TRUE(isThere(place.path("outside/file")));
    const auto back = PlaceToPutBack::at(FileURL(place.path("outside/back")));
    EXPECT_FALSE(RemovalGate().admits(std::get<PlaceToPutBack>(back)));
    const auto inside = PlaceToPutBack::at(FileURL(place.path("disk/home/sam/folder/back")));
    EXPECT_TRUE(RemovalGate().admits(std::get<PlaceToPutBack>(inside)));
}

TEST_F(ConfinedProgram, RemovesInsideAndUsesTheTrashThere) {
    EXPECT_TRUE(removed(place.path("disk/home/sam/way out"), RemovalMode::deleteNow).failed.empty());
    EXPECT_TRUE(removed(place.path("disk/home/sam/inside"), RemovalMode::trash).failed.empty());
    EXPECT_FALSE(isThere(place.path("disk/home/sam/inside")));
    EXPECT_TRUE(isThere(place.path("outside/file")));
}

TEST_F(ConfinedProgram, PutsBackFromTheTrashOfAMac) {
    Host::useSystem(System::macOS);
    place.makeFile("disk/home/sam/.Trash/inside", 3);
    const RemovalResult result = removed(place.path("disk/home/sam/inside"), RemovalMode::trash);
    EXPECT_THAT(listing(place.path("disk/home/sam/.Trash")), SizeIs(2)) << "The other one stays.";
    ASSERT_THAT(result.movedToTrash, SizeIs(1));
    EXPECT_THAT(putBackItems(result.movedToTrash).failed, IsEmpty());
    EXPECT_TRUE(isThere(place.path("disk/home/sam/inside")));
    Host::useSystem(std::nullopt);
}

TEST_F(ConfinedProgram, MakesNoTrashThroughALink) {
    place.makeLink("disk/home/sam/.local", place.path("outside"));
    place.makeLink("disk/home/way out", place.path("outside"));
    const auto before = listing(place.path("outside"));
    EXPECT_THAT(removed(place.path("disk/home/sam/inside"), RemovalMode::trash).failed, SizeIs(1));
    const EnvironmentVariable home("HOME", place.path("disk/home/way out"));
    Host::useSystem(System::macOS);
    EXPECT_THAT(removed(place.path("disk/home/sam/inside"), RemovalMode::trash).failed, SizeIs(1));
    Host::useSystem(std::nullopt);
    EXPECT_EQ(listing(place.path("outside")), before);
}

TEST_F(ConfinedProgram, ProtectsWhatTheSystemProtects) {
    place.makeFile("disk/usr/bin/program", 10);
    Host::useSystem(platformSystem());
    const RemovalResult result = removed(place.path("disk/usr/bin/program"), RemovalMode::deleteNow);
    Host::useSystem(std::nullopt);
    ASSERT_EQ(result.failed.size(), 1U);
    EXPECT_THAT(result.failed.front().reason, HasSubstr("protected system location"));
}

TEST_F(ConfinedProgram, StartsOnlyProgramsOfItsDisk) {
    const std::string mark = place.path("mark");
    const std::string command = "echo x >'" + mark + "'";
    const std::string outside = place.makeScript("outside/tool", command);
    RemovalActions &actions = RemovalActions::platform();
    EXPECT_FALSE(actions.runPackageManager(outside, {}, [] { return false; }));
    for (const std::vector<std::string> &words :
         {std::vector{outside}, std::vector{place.path("disk/../outside/tool")}, std::vector<std::string>()})
        EXPECT_TRUE(std::holds_alternative<PrivilegedRunError>(actions.runProgramAsAdministrator(words)));
    EXPECT_TRUE(actions.runAsAdministrator(command));
    EXPECT_TRUE(std::holds_alternative<PrivilegedRunError>(actions.removeAsAdministrator({})));
    EXPECT_FALSE(isThere(mark));
    const std::string inside = place.makeScript("disk/usr/bin/tool", command);
    EXPECT_TRUE(std::holds_alternative<ProcessResult>(actions.runProgramAsAdministrator({inside})));
    EXPECT_EQ(contentOf(mark), "x\n");
}

} // namespace brimvale
