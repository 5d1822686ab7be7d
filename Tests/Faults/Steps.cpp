#include "Faults/Scene.h"
#include "Faults/Verdict.h"

#include <filesystem>
#include <functional>
#include <map>
#include <tuple>

namespace brimvale::faults {

namespace {

constexpr long forEver = 0;
constexpr long atQuestion = 0;

/// An adversary that acts right before a call, and undoes that some calls later.
struct Step {
    Operation operation;
    ItemKind kind;
    bool asks; ///< its calls count from the question on; else from the first look at the scene
    const Deed *deed;
    long duration;
    long call = atQuestion;                    ///< from 1
    const char *path = "/way/place/Documents"; ///< of the item, from the top

    [[nodiscard]] std::string described() const {
        return std::string(nameOf(operation)) + " " + nameOf(kind) + " " + path +
               (asks ? ", asked, " : ", not asked, ") + deed->name + ", before call " + std::to_string(call) +
               (duration == forEver ? " for ever" : " for " + std::to_string(duration) + " calls");
    }
};

/// A name cannot be compared and deleted in one call, so nothing helps where another item takes the name of
/// the item right before that.
bool isKnownLimit(const Step &step, const Call &call) {
    const bool isOfItem = step.deed >= deedsAround.data() + deedsOfAncestors &&
                          step.deed < deedsAround.data() + deedsAround.size();
    return isOfItem && std::string_view(call.kind.name) == "unlinkat";
}

/// Runs the removal and calls `before` with the number of each call that counts, and at the question. Calls
/// that name something outside the scene do not count: they see nothing in it.
Ending runCounted(const Step &step, const std::function<void(long)> &before) {
    bool counts = false;
    long count = 0;
    Program program{argumentsFor(step.operation, Scene::top() + step.path, step.asks)};
    program.onCall = [&](const Call &call) {
        const std::string path = call.path();
        const bool isInScene = path.starts_with(Scene::top());
        counts = counts || (!step.asks && isInScene);
        if (counts && (isInScene || !path.starts_with('/'))) {
            ++count;
            if (!isKnownLimit(step, call))
                before(count);
        }
        return Answer();
    };
    if (step.asks)
        program.onQuestion = [&] {
            counts = true;
            before(atQuestion);
        };
    return run(program);
}

/// Without a question, what is there at the program's first look is what the user has named. So only guarded
/// places and the contents of the item are exchanged then.
std::vector<Step> stepsOfEveryKind() {
    std::vector<Step> steps;
    for (const Operation operation : removals)
        for (const long duration : {2L, forEver}) {
            for (const ItemKind kind : itemKinds) {
                for (const Deed &deed : deedsAround)
                    steps.push_back({operation, kind, true, &deed, duration});
                steps.push_back({operation, kind, false, &deedsAround[1], duration});
            }
            for (const Deed &deed : deedsInside)
                steps.push_back({operation, ItemKind::folder, false, &deed, duration});
        }
    return steps;
}

/// Before every call that an undisturbed run makes.
std::vector<Step> allSteps() {
    std::vector<Step> steps;
    std::map<std::tuple<Operation, ItemKind, bool>, long> lengths;
    for (Step step : stepsOfEveryKind()) {
        const std::tuple key(step.operation, step.kind, step.asks);
        if (!lengths.contains(key)) {
            const Scene scene(step.kind);
            long &length = lengths[key];
            static_cast<void>(runCounted(step, [&](long call) { length = call; }));
        }
        for (step.call = 1; step.call <= lengths[key]; ++step.call)
            steps.push_back(step);
    }
    return steps;
}

void tryStep(const Step &step, Findings &findings) {
    const Scene scene(step.kind);
    std::filesystem::create_symlink("../way", Scene::top() + "/elsewhere/link");
    const Verdict verdict(step.operation);
    const Adversary adversary(scene, *step.deed);
    bool hasActed = false;
    const Ending ending = runCounted(step, [&](long call) {
        bool hasDone = false;
        if (call == step.call)
            hasDone = hasActed = adversary.act();
        else if (hasActed && step.duration != forEver && call == step.call + step.duration)
            hasDone = adversary.undo();
        findings.countActions(hasDone ? 1 : 0);
    });
    verdict.give(ending, findings);
}

} // namespace

std::string steps(Rounds rounds, Findings &findings) {
    runCases(allSteps(), rounds, findings, tryStep);
    return findings.figures("actions", "stepped removals");
}

std::string questions(Rounds rounds, Findings &findings) {
    std::vector<Step> all;
    for (const char *path : {"/way/place/Documents", "/elsewhere/link/place/Documents"})
        for (Step step : stepsOfEveryKind()) {
            step.path = path;
            if (step.asks)
                all.push_back(step);
        }
    runCases(all, rounds, findings, tryStep);
    return findings.figures("actions", "questions");
}

} // namespace brimvale::faults
