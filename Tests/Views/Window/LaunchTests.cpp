#include "Views/Window/Launch.h"

#include "Core/Text/Shell.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using testing::TemporaryFolder;
namespace fs = std::filesystem;

/// A fresh folder that is the working directory while this lives.
class WorkingDirectory : public TemporaryFolder {
public:
    WorkingDirectory() : before_(fs::current_path()) { fs::current_path(path()); }
    ~WorkingDirectory() { fs::current_path(before_); }

private:
    fs::path before_;
};

std::variant<Launch, Launch::Refusal> read(const std::vector<const char *> &words) {
    return Launch::read(words, "1.2.3");
}

} // namespace

TEST(Launch, ReadsWhatTheWindowIsToShow) {
    const WorkingDirectory here;
    here.makeFolder("folder/inner");
    here.makeFolder("-dashed");
    here.makeFolder("ta\tb");
    here.makeLink("link", "folder/inner");
    const std::string odd = here.possibleName("no\xfftext");
    here.makeFolder(odd);
    const std::string absolute = here.path("folder");
    struct Case {
        std::vector<const char *> words;
        std::optional<std::string> folder;
        std::optional<System> system;
    };
    for (const Case &one :
         {Case{{}, std::nullopt, std::nullopt}, Case{{"--"}, std::nullopt, std::nullopt},
          Case{{absolute.c_str()}, absolute, std::nullopt}, Case{{"folder"}, absolute, std::nullopt},
          Case{{"./folder/inner/.."}, absolute, std::nullopt}, Case{{"."}, here.path(), std::nullopt},
          Case{{"/"}, "/", std::nullopt}, Case{{"link/"}, here.path("link"), std::nullopt},
          Case{{"link/.."}, absolute, std::nullopt}, Case{{"ta\tb"}, here.path("ta\tb"), std::nullopt},
          Case{{odd.c_str()}, here.path(odd), std::nullopt},
          Case{{"--", "-dashed"}, here.path("-dashed"), std::nullopt},
          Case{{"--system", "macos", "folder"}, absolute, System::macOS},
          Case{{"folder", "--system=linux"}, absolute, System::linux},
          Case{{"--system", "linux", "--system", "macos"}, std::nullopt, System::macOS}}) {
        SCOPED_TRACE(::testing::PrintToString(one.words));
        const auto launch = read(one.words);
        ASSERT_TRUE(std::holds_alternative<Launch>(launch)) << std::get<Launch::Refusal>(launch).text;
        const std::optional<FileURL> &folder = std::get<Launch>(launch).folder;
        EXPECT_EQ(folder ? std::optional(folder->path()) : std::nullopt, one.folder);
        EXPECT_EQ(std::get<Launch>(launch).system, one.system);
    }
}

TEST(Launch, RefusesWrongUsage) {
    const WorkingDirectory here;
    here.makeFolder("folder");
    struct Case {
        std::vector<const char *> words;
        const char *named;
    };
    for (const Case &one : {
             Case{{"folder", "folder"}, "\"folder\""},
             Case{{"--bogus", "folder"}, "\"--bogus\""},
             Case{{"--systematic"}, "\"--systematic\""},
             Case{{"-\x07"}, "\"-?\""},
             Case{{"--system"}, "--system takes"},
             Case{{"--system", "windows"}, "\"windows\""},
         }) {
        SCOPED_TRACE(::testing::PrintToString(one.words));
        const auto launch = read(one.words);
        ASSERT_TRUE(std::holds_alternative<Launch::Refusal>(launch));
        const auto &refusal = std::get<Launch::Refusal>(launch);
        EXPECT_EQ(refusal.exitStatus, 2);
        EXPECT_THAT(refusal.text, StartsWith("brimvale: "));
        EXPECT_THAT(refusal.text, HasSubstr(one.named));
        EXPECT_THAT(refusal.text, Not(HasSubstr("\x1b")));
        EXPECT_EQ(refusal.text.find('\n'), refusal.text.size() - 1) << "one line";
    }
}

TEST(Launch, SelectsAFileInItsFolder) {
    const WorkingDirectory here;
    const std::string file = here.makeFile("folder/file");
    for (const char *typed : {"folder/file", file.c_str()}) {
        const auto launch = std::get<Launch>(read({typed}));
        EXPECT_EQ(launch.folder, FileURL(here.path("folder")));
        EXPECT_EQ(launch.file, FileURL(file));
        EXPECT_EQ(launch.notice, "");
    }
}

TEST(Launch, OpensTheWindowWithASentenceWhereThereIsNothing) {
    const WorkingDirectory here;
    here.makeFile("file");
    here.makeLink("dangling", "gone");
    here.makeLink("loop", "loop");
    struct Case {
        std::vector<const char *> words;
        const char *named;
    };
    for (const Case &one :
         {Case{{"gone"}, "“gone”"}, Case{{""}, "“”"}, Case{{"file/"}, "“file/”"},
          Case{{"dangling"}, "“dangling”"}, Case{{"loop"}, "“loop”"}, Case{{"\x1b[31mgone"}, "“?[31mgone”"},
          Case{{"\xc2\x9b"
                "31mgone \xf0\x9f\x93\x81"},
               "“?31mgone \xf0\x9f\x93\x81”"},
          Case{{"--", "--version"}, "“--version”"}}) {
        SCOPED_TRACE(::testing::PrintToString(one.words));
        const auto launch = std::get<Launch>(read(one.words));
        EXPECT_FALSE(launch.folder || launch.file);
        EXPECT_THAT(launch.notice, StartsWith(one.named));
        EXPECT_THAT(launch.notice, Not(HasSubstr("\x1b")));
        EXPECT_EQ(launch.notice.find('\n'), std::string::npos);
    }
    // A relative path leads nowhere if the working directory is gone.
    const TemporaryFolder other;
    fs::current_path(here.makeFolder("doomed"));
    fs::remove(here.path("doomed"));
    EXPECT_THAT(std::get<Launch>(read({"folder"})).notice, StartsWith("“folder”"));
    EXPECT_EQ(std::get<Launch>(read({other.path().c_str()})).notice, "");
}

TEST(Launch, AnswersWithoutADisplay) {
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        unsetenv(variable);
    const auto version = Shell::runWithStatus(BRIMVALE_PROGRAM, {"--version"});
    ASSERT_TRUE(version);
    EXPECT_EQ(version->exitStatus, 0);
    EXPECT_THAT(version->output, StartsWith("brimvale "));

    const auto help = Shell::runWithStatus(BRIMVALE_PROGRAM, {"--help", "--bogus"});
    ASSERT_TRUE(help);
    EXPECT_EQ(help->exitStatus, 0);
    EXPECT_THAT(help->output, HasSubstr("--system macos|linux"));

    const auto wrong = Shell::runWithStatus(BRIMVALE_PROGRAM, {"--bogus"});
    ASSERT_TRUE(wrong);
    EXPECT_EQ(wrong->exitStatus, 2);
    EXPECT_EQ(wrong->output, "") << "errors do not go to standard output";
}

} // namespace brimvale
