#include "Platform/Linux/RootRun.h"

#include <mutex>

namespace brimvale {

namespace {

/// Statuses of pkexec itself (pkexec(1)): the user dismissed the question; permission was refused, or the
/// program could not be started.
constexpr int dismissed = 126;
constexpr int notAuthorized = 127;

} // namespace

Result<ProcessResult, PrivilegedRunError> runAsRoot(const std::vector<std::string> &words,
                                                    const std::string &input, const Tools &tools) {
    static std::mutex oneQuestionAtATime;
    const std::lock_guard guard(oneQuestionAtATime);
    std::optional<ProcessResult> result =
        runProcessWithInput(tools.administratorRunner, words, StandardError::discarded, input);
    if (!result || result->exitStatus == dismissed || result->exitStatus == notAuthorized)
        return PrivilegedRunError{};
    return *std::move(result);
}

} // namespace brimvale
