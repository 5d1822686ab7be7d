#include "Faults/Scene.h"
#include "Faults/Verdict.h"

#include <atomic>
#include <random>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace brimvale::faults {

namespace {

/// Makes the calling thread another user's, and only this one: the system keeps a user for each, and only the
/// library's functions change all.
void becomeOther() {
    constexpr uid_t nobody = 65534;
    syscall(SYS_setresgid, nobody, nobody, nobody);
    syscall(SYS_setresuid, nobody, nobody, nobody);
}

/// A thread that lets adversaries act and undo that, over and over, until it is joined. Root can have it be
/// another user's.
std::jthread raceOf(std::vector<Adversary> adversaries, bool isOtherUser, std::atomic<long> &actions) {
    return std::jthread(
        [adversaries = std::move(adversaries), isOtherUser, &actions](const std::stop_token &end) {
            if (isOtherUser)
                becomeOther();
            while (!end.stop_requested()) {
                for (const Adversary &adversary : adversaries)
                    actions += (adversary.act() ? 1 : 0) + (adversary.undo() ? 1 : 0);
                std::this_thread::yield(); // or on few cores the removal would hardly get on
            }
        });
}

/// What a round tries, by its number.
struct Setting {
    Operation operation;
    bool isOtherUser;
    std::vector<const Deed *> deeds;

    explicit Setting(long round) {
        std::mt19937 random(static_cast<unsigned>(round));
        operation = random() % 3 == 0 ? Operation::trash : Operation::deletion;
        const bool isInside = random() % 2 == 0;
        isOtherUser = !isInside && geteuid() == 0 && random() % 2 == 0;
        if (isInside)
            deeds = {&deedsInside.at(random() % deedsInside.size()),
                     &deedsInside.at(random() % deedsInside.size())};
        else // just one: another would be done to what the first one has put there
            deeds = {&deedsAround.at(random() % deedsOfAncestors)};
    }

    [[nodiscard]] std::string described() const {
        std::string text = std::string(nameOf(operation)) + (isOtherUser ? ", another user" : "");
        for (const Deed *deed : deeds)
            text.append(", ").append(deed->name);
        return text;
    }
};

void race(const Setting &setting, Findings &findings) {
    const Scene scene(ItemKind::folder);
    if (setting.isOtherUser)
        scene.giveAway();
    const Verdict verdict(setting.operation);
    std::vector<Adversary> adversaries;
    for (const Deed *deed : setting.deeds)
        adversaries.emplace_back(scene, *deed);
    std::atomic<long> actions = 0;
    std::jthread running;
    // From the question on, it is certain which item is meant.
    const auto begin = [&] { running = raceOf(std::move(adversaries), setting.isOtherUser, actions); };
    const Ending ending = run({argumentsFor(setting.operation, Scene::item(), true), {}, begin});
    running = {};
    findings.countActions(actions);
    verdict.give(ending, findings);
}

} // namespace

std::string races(Rounds rounds, Findings &findings) {
    for (long round = rounds.first; round < rounds.first + rounds.count; ++round) {
        const Setting setting(round);
        findings.begin(round, setting.described());
        race(setting, findings);
    }
    return findings.figures("exchanges, moves and mounts", "removals");
}

} // namespace brimvale::faults
