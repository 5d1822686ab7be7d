#include "Core/Storage/LocalSnapshot.h"
#include "Platform/Host.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A machine with a stand-in for Snapper, whose snapshots are in a file.
class ToolSnapshots : public ::testing::Test {
protected:
    ToolSnapshots() {
        host.system = System::linux;
        host.tools.timeshift = "";
        host.tools.snapper = folder.makeScript(
            "snapper", "case $* in\n*list-configs) printf 'config,subvolume\\nroot,%s\\n' '" + folder.path() +
                           "' ;;\n*) cat '" + folder.path("rows") + "' ;;\nesac\n");
    }

    void setRows(const std::string &rows) {
        folder.writeFile("rows", "number,default,active,date,used-space,description\n" + rows);
    }

    std::vector<LocalSnapshot> list() {
        std::vector<LocalSnapshot> snapshots = LocalSnapshot::list(folder.path(), host);
        // The disk that holds the folder may have some of its own.
        std::erase_if(snapshots, [](const LocalSnapshot &one) { return one.tool != "Snapper"; });
        return snapshots;
    }

    bool deleteOne(const LocalSnapshot &snapshot) {
        return deleteSnapshot(snapshot, FileURL(folder.path()), actions, host);
    }

    testing::TemporaryFolder folder;
    testing::RecordingActions actions;
    Host host = Host::current();
};

} // namespace

TEST_F(ToolSnapshots, AreDeletedByTheirTool) {
    const std::string first = "4,no,no,2026-05-01 10:15:00,,before\n";
    setRows(first + "5,no,no,2026-05-02 10:15:00,4096,after\n");
    const std::vector<LocalSnapshot> listed = list();
    ASSERT_EQ(listed.size(), 2U);
    EXPECT_EQ(listed[0].name, "root 5") << "the newest first";
    EXPECT_EQ(listed[0].exclusiveBytes, 4096);
    EXPECT_TRUE(listed[0].canBeDeleted());

    actions.onCommand = [&](const std::string &) { setRows(first); };
    EXPECT_TRUE(deleteOne(listed[0]));
    const std::string command = "admin " + host.tools.snapper + " -c root delete ";
    EXPECT_THAT(actions.calls, ElementsAre(command + "5"));
    EXPECT_FALSE(deleteOne(listed[0])) << "it is gone";

    // The program did nothing, and then nobody gave the password.
    actions.onCommand = nullptr;
    EXPECT_FALSE(deleteOne(listed[1]));
    actions.privilegedRunError = PrivilegedRunError{};
    EXPECT_FALSE(deleteOne(listed[1]));
    EXPECT_THAT(actions.calls, ElementsAre(command + "5", command + "4", command + "4"));
}

TEST_F(ToolSnapshots, AreDeletedAsRootOnlyAsTheyAreListed) {
    setRows("4,no,no,2026-05-01 10:15:00,,before\n5,no,yes,2026-05-02 10:15:00,,running\n");
    host.tools.snapper =
        folder.makeScript("snapper", "case $* in\n*list-configs) printf 'config,subvolume\\nroot,%s\\n' '" +
                                         folder.path() + "' ;;\n*list*) cat '" + folder.path("rows") +
                                         "' ;;\n*) echo \"$*\" >'" + folder.path("done") + "' ;;\nesac\n");
    const std::string date = "1777630500";
    const auto deleted = [&](const std::vector<std::string> &arguments) {
        const auto named = NamedSnapshot::fromArguments(arguments);
        return named && deleteSnapshotAsRoot(*named, host);
    };
    const std::string volume = folder.path();
    for (const std::vector<std::string> &wrong : {std::vector<std::string>{},
                                                  {volume, "root 4"},
                                                  {"folder", "root 4", date},
                                                  {volume, "", date},
                                                  {volume, "root 4", date, "more"},
                                                  {volume, "root 4", ""},
                                                  {volume, "root 4", "1777630501"},
                                                  {volume, "root 5", "1777716900"},
                                                  {volume, "root 6", date},
                                                  {volume, "4", date},
                                                  {volume, "--help", date}})
        EXPECT_FALSE(deleted(wrong)) << ::testing::PrintToString(wrong);
    EXPECT_FALSE(testing::isThere(folder.path("done")));
    EXPECT_TRUE(deleted({volume, "root 4", date}));
    EXPECT_EQ(testing::contentOf(folder.path("done")), "-c root delete 4\n");
}

TEST_F(ToolSnapshots, AreNotDeletedInThePlaceOfAnother) {
    setRows("4,no,no,2026-05-01 10:15:00,,before\n");
    const LocalSnapshot shown = list().at(0);
    // Deleted and made anew under the same number.
    setRows("4,no,no,2026-06-01 10:15:00,,other\n");
    EXPECT_FALSE(deleteOne(shown));
    // The computer was restarted from it.
    setRows("4,no,yes,2026-05-01 10:15:00,,before\n");
    EXPECT_FALSE(deleteOne(shown));
    LocalSnapshot unknown = shown;
    unknown.deletion = {};
    EXPECT_FALSE(unknown.canBeDeleted());
    EXPECT_FALSE(deleteOne(unknown));
    EXPECT_THAT(actions.calls, IsEmpty());
    setRows("4,no,no,2026-05-01 10:15:00,123,before\n");
    actions.onCommand = [&](const std::string &) { setRows(""); };
    EXPECT_TRUE(deleteOne(shown)) << "it may have grown";
}

} // namespace brimvale
