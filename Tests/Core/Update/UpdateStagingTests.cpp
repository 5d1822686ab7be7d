#include "Core/Update/UpdateStaging.h"

#include "Core/Update/UpdateInstallation.h"
#include "Support/ChildProcess.h"
#include "Support/StandInTools.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::makeApp;
using testing::makeTool;
using testing::TemporaryFolder;

/// An archive with one application, and tools to stage it.
struct Release {
    explicit Release(const testing::SampleApp &app = {}) {
        makeApp(content, "Brimvale.app", app);
        content.writeFile("Read me.txt", "hello");
    }

    [[nodiscard]] UpdateResult<FileURL> stage(const std::optional<std::string> &sha256 = std::nullopt) const {
        const FileURL archive(folder.writeFile("archive.zip", testing::archiveOf(content.path())));
        const ExpectedRelease expected{sha256, "example.brimvale.Brimvale", 42};
        return stageUpdate(archive, expected, FileURL(folder.path("tmp")), tools);
    }

    TemporaryFolder content;
    TemporaryFolder folder;
    Tools tools = testing::makeUpdateTools(folder);
};

/// The sentence of a failure; the path where there is none.
template<class Success>
std::string sentenceOf(const UpdateResult<Success> &result) {
    const auto *failure = std::get_if<UpdateFailure>(&result);
    return failure == nullptr ? "no failure" : failure->localizedDescription;
}

const std::string noChecksum = "The download did not match its checksum and was discarded.";
const std::string notUnpacked = "The update could not be unpacked.";
const std::string notSigned = "The downloaded app is not validly signed and was discarded.";
const std::string otherTeam = "The downloaded app is signed by someone else and was discarded.";

} // namespace

TEST(UpdateStaging, StagesAVerifiedApplicationInAFolderThatNobodyElseCanEnter) {
    const Release release;
    const std::string digest = testing::sha256Of(testing::archiveOf(release.content.path()));
    std::string upperCase = digest;
    std::transform(digest.begin(), digest.end(), upperCase.begin(), ::toupper);
    for (const auto &sha256 :
         {std::optional(digest), std::optional(upperCase), std::optional<std::string>()}) {
        const auto result = release.stage(sha256);
        ASSERT_EQ(sentenceOf(result), "no failure");
        const FileURL &app = std::get<FileURL>(result);
        EXPECT_EQ(app.fileName(), "Brimvale.app");
        EXPECT_EQ(testing::workingContent(app.path()), "new");
        const FileURL folder = app.parent();
        EXPECT_THAT(std::string(folder.fileName()),
                    ::testing::MatchesRegex("update-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
        EXPECT_EQ(fs::status(folder.path()).permissions(), fs::perms::owner_all);
    }
}

TEST(UpdateStaging, StagesNothingThatIsNotVerified) {
    struct Case {
        std::string name, sentence;
        std::function<void(Release &)> meddle;
        std::optional<std::string> sha256 = std::nullopt;
    };
    const auto tool = [](const char *name, const char *body) {
        return [=](Release &release) { makeTool(release.folder, name, body); };
    };
    const std::string digest(64, 'a');
    const std::vector<Case> cases = {
        {"another digest", noChecksum, [](Release &) {}, digest},
        {"an empty digest", noChecksum, [](Release &) {}, ""},
        {"shasum fails", noChecksum, tool("shasum", "echo 'aa  x'; exit 1"), "aa"},
        {"shasum says nothing", noChecksum, tool("shasum", "exit 0"), ""},
        {"there is no shasum", noChecksum, [](Release &release) { release.tools.shasum = ""; }, digest},
        {"ditto fails halfway", notUnpacked, tool("ditto", "tar -xf \"$3\" -C \"$4\"; exit 1")},
        {"no application", notUnpacked,
         [](Release &release) { fs::remove_all(release.content.path("Brimvale.app")); }},
        {"a file called so", notUnpacked,
         [](Release &release) {
             fs::remove_all(release.content.path("Brimvale.app"));
             release.content.makeFile("Brimvale.app", 10);
         }},
        {"a link that leads out", notUnpacked,
         [](Release &release) {
             fs::rename(release.content.path("Brimvale.app"), release.folder.path("Elsewhere.app"));
             release.content.makeLink("Brimvale.app", release.folder.path("Elsewhere.app"));
         }},
        {"codesign rejects without a word", notSigned, tool("codesign", "exit 1")},
        {"there is no codesign", notSigned, [](Release &release) { release.tools.codesign = ""; }},
        {"codesign has no details", notSigned, tool("codesign", "exit 0")},
        {"codesign fails at the details", notSigned,
         tool("codesign", "[ \"$1\" != -dv ] || { echo TeamIdentifier=QK4M7ZP2TX; exit 1; }")},
        {"a path that names our team", otherTeam,
         [](Release &release) {
             fs::rename(release.content.path("Brimvale.app"),
                        release.content.path("TeamIdentifier=QK4M7ZP2TX.app"));
             release.content.writeFile("TeamIdentifier=QK4M7ZP2TX.app/Contents/team", "not set");
         }},
        {"a path that names our team on a line", otherTeam,
         [](Release &release) {
             const std::string app = release.content.path("x\nTeamIdentifier=QK4M7ZP2TX\n.app");
             fs::rename(release.content.path("Brimvale.app"), app);
             std::ofstream(app + "/Contents/team") << "not set";
         }},
        {"a team of which only the details tell", otherTeam,
         tool("codesign", "case $* in -dv*) echo TeamIdentifier=QK4M7ZP2TX ;; *' -R '*) exit 3 ;; esac")},
        {"codesign is not asked deeply", otherTeam,
         tool("codesign", "[ \"$1\" = -dv ] && echo TeamIdentifier=QK4M7ZP2T; "
                          "[ \"$1 $2 $3\" = '--verify --deep --strict' ] || [ \"$1\" = -dv ]")},
    };
    for (const Case &one : cases) {
        Release release;
        one.meddle(release);
        EXPECT_EQ(sentenceOf(release.stage(one.sha256)), one.sentence) << one.name;
    }
    EXPECT_EQ(sentenceOf(Release({.isWhole = false}).stage()), notSigned);
    for (const std::string team : {"ABCDEFGHIJ", "not set", ""})
        EXPECT_EQ(sentenceOf(Release({.team = team}).stage()), otherTeam) << team;
}

TEST(UpdateStaging, StagesOnlyTheAnnouncedBuildOfThisProgram) {
    const auto announced = [](const std::string &build) {
        return "The downloaded app is build " + build + ", but build 42 was announced. It was discarded.";
    };
    EXPECT_EQ(sentenceOf(Release({.build = "41"}).stage()), announced("41"));
    EXPECT_EQ(sentenceOf(Release({.build = "43"}).stage()), announced("43"));
    EXPECT_EQ(sentenceOf(Release({.build = "42.1"}).stage()), announced("0"));
    for (const std::string identifier : {"example.brimvale.Other", "example.brimvale.brimvale", ""})
        EXPECT_EQ(sentenceOf(Release({.identifier = identifier}).stage()),
                  "The downloaded app is a different program and was discarded.");
    Release unknown;
    fs::remove(unknown.content.path("Brimvale.app/Contents/Info.plist"));
    EXPECT_EQ(sentenceOf(unknown.stage()), "The downloaded app is a different program and was discarded.");
}

TEST(UpdateStaging, SaysWhereItCannotUnpack) {
    const Release release;
    release.folder.makeFile("tmp");
    EXPECT_THAT(sentenceOf(release.stage()),
                ::testing::StartsWith("The folder " + release.folder.path("tmp/update-")));
}

TEST(UpdateInstallation, NamesWhatTheScriptWorksWith) {
    const TemporaryFolder folder;
    for (const auto &[bundle, executable] : {std::pair("Brimvale.app", "Contents/MacOS/Brimvale"),
                                             std::pair("Brimvale 2.1.app/", "Contents/MacOS/Brimvale 2.1"),
                                             std::pair("./Brimvale", "Contents/MacOS/Brimvale")}) {
        std::vector<std::string> log;
        const std::string program = fs::path(executable).filename();
        const FileURL staged(makeApp(folder, "tmp/update-1/New.app", {.executable = program}));
        folder.makeFolder(bundle);
        const auto result = prepareInstallation(staged, FileURL(folder.path(bundle)), 4711, FileURL("/log"),
                                                [&](const std::string &line) { log.push_back(line); });
        ASSERT_EQ(sentenceOf(result), "no failure");
        const auto &installation = std::get<Installation>(result);
        EXPECT_EQ(installation.staged, staged);
        EXPECT_EQ(installation.current, FileURL(folder.path(bundle)).standardized());
        EXPECT_EQ(installation.executable, executable);
        EXPECT_EQ(installation.process, 4711);
        EXPECT_EQ(log, std::vector<std::string>{"[Corvel] installAndRelaunch: current=" +
                                                installation.current.path() + " staged=" + staged.path()});
    }
}

TEST(UpdateInstallation, RefusesWithASentenceBeforeAScriptIsWritten) {
    const TemporaryFolder folder;
    const FileURL app(makeApp(folder, "Brimvale.app"));
    const FileURL staged(makeApp(folder, "tmp/update-1/Brimvale.app"));
    const FileURL quoted(makeApp(folder, "Ada's/Brimvale.app"));
    const FileURL gone(folder.path("tmp/update-2/Brimvale.app"));
    const FileURL renamed(makeApp(folder, "Old one.app"));
    const FileURL moved(folder.path("Moved.app"));
    const FileURL damaged(folder.makeFolder("tmp/update-3/Brimvale.app"));
    const std::string calling = "[Corvel] installAndRelaunch: current=";
    const std::string quote = ", because a single quote stands in this path. Rename that folder, or install "
                              "the update manually.";
    struct Case {
        std::optional<FileURL> staged;
        FileURL current;
        std::string sentence;
        std::vector<std::string> log = {};
    };
    for (const Case &one : {
             Case{std::nullopt,
                  app,
                  "Nothing is staged to install. Download the update again.",
                  {"[Corvel] installAndRelaunch: staged was nil"}},
             Case{gone,
                  app,
                  "The downloaded copy is no longer on disk. Download the update again.",
                  {"[Corvel] installAndRelaunch: staged missing at " + gone.path()}},
             Case{quoted, app, "The installer can’t work with " + quoted.path() + quote},
             Case{staged, quoted, "The installer can’t work with " + quoted.path() + quote},
             Case{staged,
                  renamed,
                  "The app was renamed to Old one.app, so the update can’t replace it. Quit it, name it "
                  "Brimvale.app, open it, and update again.",
                  {calling + renamed.path() + " staged=" + staged.path()}},
             Case{staged,
                  moved,
                  "The app is no longer at " + moved.path() +
                      ". Quit it, open it from its new place, and update again.",
                  {calling + moved.path() + " staged=" + staged.path()}},
             Case{damaged,
                  app,
                  "The downloaded copy is damaged. Download the update again.",
                  {calling + app.path() + " staged=" + damaged.path()}},
         }) {
        std::vector<std::string> log;
        EXPECT_EQ(sentenceOf(prepareInstallation(one.staged, one.current, 1, FileURL("/log"),
                                                 [&](const std::string &line) { log.push_back(line); })),
                  one.sentence);
        EXPECT_EQ(log, one.log);
    }
}

TEST(UpdateInstallation, RefusesAFolderThatTheUserCannotWrite) {
    const TemporaryFolder folder;
    const FileURL app(makeApp(folder, "Closed/Brimvale.app"));
    const FileURL staged(makeApp(folder, "tmp/update-1/Brimvale.app"));
    fs::permissions(folder.path("Closed"), fs::perms(0555));
    fs::permissions(folder.path(), fs::perms(0755));
    const std::string sentence = testing::answerOfChild([&] {
        testing::becomeOrdinaryUser();
        return sentenceOf(prepareInstallation(staged, app, 1, FileURL("/log"), [](const std::string &) {}));
    });
    EXPECT_EQ(sentence, folder.path("Closed") +
                            " is not writable by this account. Move the app somewhere you "
                            "own, or install the update manually.");
}

} // namespace brimvale
