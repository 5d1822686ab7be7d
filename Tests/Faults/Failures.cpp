#include "Faults/Scene.h"
#include "Faults/Verdict.h"

#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <sys/syscall.h>
#include <system_error>

namespace brimvale::faults {

namespace {

/// The n-th call of a kind, and how it fails.
struct Failure {
    Operation operation;
    const CallKind *kind;
    long count;               ///< from 1
    std::optional<int> error; ///< nothing: the program is killed

    [[nodiscard]] std::string described() const {
        return std::string(nameOf(operation)) + ", " + kind->name + " " + std::to_string(count) + " " +
               (error ? strerrorname_np(*error) : "killed");
    }
};

/// What comes before a program does anything with the scene or the mounts is its start.
bool isOfWork(const Call &call) {
    const std::string path = call.path();
    return path.starts_with(Scene::top()) || path.ends_with("/mountinfo");
}

/// A failing close still closes, but here it would not: the reader of a pipe's other end would wait for
/// ever.
bool closesPipe(const Call &call) {
    std::error_code error;
    const std::string file =
        "/proc/" + std::to_string(call.process) + "/fd/" + std::to_string(call.arguments[0]);
    return call.kind.number == SYS_close &&
           !std::filesystem::read_symlink(file, error).native().starts_with('/');
}

/// Every failure of every call that an undisturbed run makes.
std::vector<Failure> failuresOf(Operation operation) {
    const Scene scene(ItemKind::folder);
    std::map<long, long> counts;
    bool hasBegun = false;
    const Ending ending = run({argumentsFor(operation, Scene::item(), false), [&](const Call &call) {
                                   hasBegun = hasBegun || isOfWork(call);
                                   counts[call.kind.number] += hasBegun ? 1 : 0;
                                   return Answer();
                               }});
    if (ending.status != 0)
        throw std::runtime_error("undisturbed, it failed: " + ending.words);
    std::vector<Failure> failures;
    for (const auto &[number, all] : counts)
        for (long count = 1; count <= all; ++count) {
            const CallKind *kind = callKind(number);
            for (const int error : kind->errors)
                failures.push_back({operation, kind, count, error});
            failures.push_back({operation, kind, count, std::nullopt});
        }
    return failures;
}

void tryFailure(const Failure &failure, Findings &findings) {
    const Scene scene(ItemKind::folder);
    Verdict verdict(failure.operation);
    bool hasBegun = false;
    long count = 0;
    const Ending ending = run({argumentsFor(failure.operation, Scene::item(), false), [&](const Call &call) {
                                   hasBegun = hasBegun || isOfWork(call);
                                   if (!hasBegun || &call.kind != failure.kind || ++count != failure.count)
                                       return Answer();
                                   if (failure.error && closesPipe(call))
                                       return Answer();
                                   findings.countActions(1);
                                   if (!failure.error)
                                       return Answer{Answer::kill, 0};
                                   verdict.wordsAreLost = call.kind.path < 0 && call.arguments[0] <= 2;
                                   return Answer{Answer::fail, *failure.error};
                               }});
    verdict.give(ending, findings);
}

} // namespace

std::string failures(Rounds rounds, Findings &findings) {
    std::vector<Failure> all;
    for (const Operation operation : {Operation::deletion, Operation::trash, Operation::backup}) {
        const std::vector<Failure> more = failuresOf(operation);
        all.insert(all.end(), more.begin(), more.end());
    }
    runCases(all, rounds, findings, tryFailure);
    return findings.figures("failures and kills", "runs");
}

} // namespace brimvale::faults
