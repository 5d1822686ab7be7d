// Tries to have removals and backups do harm:
//
//   Faults PART [ROUNDS [FIRST [user]]]
//
// PART is one of those below. Each round is determined by its number, from FIRST (0) on; "all" rounds are as
// many as there are cases. With "user", root gives up its rights first. The last line has the figures. The
// status is 1 where there was a fault, and 77 where this machine cannot run the part.

#include "Faults/Round.h"
#include "Faults/Scene.h"
#include "Faults/Watched.h"
#include "Platform/Linux/RemovalRequest.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale::faults {

namespace {

using Part = std::string (*)(Rounds, Findings &);

const std::map<std::string, Part> parts = {{"races", races},   {"failures", failures},
                                           {"steps", steps},   {"questions", questions},
                                           {"guards", guards}, {"administrator", administrator}};

/// In the form in which tests are skipped.
int skip(const char *reason) {
    std::printf("Faults: Skipped\n%s\n", reason);
    return 77;
}

/// Another user may not be able to go where the programs were built, and gets copies in a folder. They find
/// each other by their places.
void becomeUser(std::string &program, const testing::TemporaryFolder &folder) {
    namespace fs = std::filesystem;
    const fs::path built = fs::path(program).parent_path().parent_path();
    const std::string copy = "bin/" + fs::path(program).filename().native();
    for (const std::string &one : {copy, std::string(removalProgram)}) {
        folder.makeFolder(fs::path(one).parent_path().native());
        fs::copy_file(built / one, folder.path(one));
    }
    program = folder.path(copy);
    chmod(folder.path().c_str(), 0755);
    testing::becomeOrdinaryUser();
    prctl(PR_SET_DUMPABLE, 1); // or what is this process's own would stay root's in /proc
}

int runPart(Part part, Rounds rounds, bool asUser, Findings &findings) {
    const char *moved = std::getenv("BRIMVALECTL"), *options = std::getenv("ASAN_OPTIONS");
    std::string program = moved != nullptr ? moved : BRIMVALECTL;
    const testing::TemporaryFolder copy;
    if (asUser)
        becomeUser(program, copy);
    useProgram(program);
    // Sanitizers look for leaks with calls that fail here.
    setenv("ASAN_OPTIONS", (std::string(options != nullptr ? options : "") + ":detect_leaks=0").c_str(), 1);
    const testing::TemporaryFolder place;
    chmod(place.path().c_str(), 0755);
    Scene::useMountPoint(place.makeFolder("volume"));
    if (!testing::ownMounts())
        return skip("mounting is not permitted here");
    if (!canWatchCalls())
        return skip("system calls cannot be watched here");
    std::printf("%s\n", part(rounds, findings).c_str());
    return findings.hasFaults() ? 1 : 0;
}

} // namespace

} // namespace brimvale::faults

int main(int argc, char **argv) {
    using namespace brimvale::faults;
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty() || !parts.contains(words[0])) {
        std::fputs("usage: Faults PART [ROUNDS [FIRST [user]]]\n", stderr);
        return 2;
    }
    const auto number = [&](std::size_t i) { return words.size() > i ? std::atol(words[i].c_str()) : 0; };
    const bool asUser = words.size() > 3 && words[3] == "user" && geteuid() == 0;
    Findings findings("Faults " + words[0], asUser ? " user" : "");
    try {
        return runPart(parts.at(words[0]), {number(2), number(1)}, asUser, findings);
    } catch (const std::exception &error) {
        std::printf("%s: %s\n", words[0].c_str(), error.what());
        return 1;
    }
}
