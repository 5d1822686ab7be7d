#include "Faults/Scene.h"
#include "Faults/Verdict.h"
#include "Platform/Host.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/mount.h>

namespace brimvale::faults {

namespace {

namespace fs = std::filesystem;

/// A stand-in for the program that asks for the password, in its place while the object lives. It runs what
/// it is given, whatever that is.
class StandIn {
public:
    /// Lays a folder with the stand-in over that of the real one, which need not be there.
    StandIn() {
        for (const char *layer : {"above", "work"})
            fs::create_directories(folder_ / layer);
        const fs::path script = folder_ / "above" / runner_.filename();
        std::ofstream(script) << "#!/bin/sh\nexec \"$@\"\n";
        fs::permissions(script, fs::perms(0755));
        const std::string below = runner_.parent_path().native();
        const std::string layers = "lowerdir=" + below + ",upperdir=" + (folder_ / "above").native() +
                                   ",workdir=" + (folder_ / "work").native();
        if (mount("none", below.c_str(), "overlay", 0, layers.c_str()) != 0)
            throw std::runtime_error("cannot mount a stand-in over " + below);
    }
    ~StandIn() {
        umount2(runner_.parent_path().c_str(), MNT_DETACH);
        fs::remove_all(folder_);
    }
    StandIn(const StandIn &) = delete;
    StandIn &operator=(const StandIn &) = delete;

    [[nodiscard]] std::string path() const { return runner_.native(); }

private:
    fs::path folder_ = fs::path(Scene::top()).parent_path() / "tools";
    fs::path runner_ = platformTools().administratorRunner;
};

/// What happens while the system asks for the password.
struct Prompt {
    ItemKind kind;
    const Deed *deed;

    [[nodiscard]] std::string described() const {
        return std::string("administrator, ") + nameOf(kind) + ", " + deed->name;
    }
};

void tryPrompt(const Prompt &prompt, Findings &findings) {
    const Scene scene(prompt.kind);
    const StandIn standIn;
    const Verdict verdict(Operation::deletion);
    const Adversary adversary(scene, *prompt.deed);
    const auto onCall = [&](const Call &call) {
        if (std::string(call.kind.name) == "execve" && call.path() == standIn.path())
            findings.countActions(adversary.act() ? 1 : 0);
        return Answer();
    };
    verdict.give(run({{"remove", "--as-admin", "--yes", Scene::item()}, onCall}), findings);
}

} // namespace

std::string administrator(Rounds rounds, Findings &findings) {
    std::vector<Prompt> prompts;
    for (const ItemKind kind : itemKinds)
        for (const Deed &deed : deedsAround)
            prompts.push_back({kind, &deed});
    for (const Deed &deed : deedsInside)
        prompts.push_back({ItemKind::folder, &deed});
    runCases(prompts, rounds, findings, tryPrompt);
    if (!findings.hasActed())
        throw std::runtime_error("the stand-in was never started");
    return findings.figures("exchanges, moves and mounts", "removals as the administrator");
}

} // namespace brimvale::faults
