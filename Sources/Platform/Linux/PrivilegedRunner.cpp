#include "Platform/PrivilegedRunner.h"

#include "Platform/ProcessRunner.h"

#include <mutex>

namespace brimvale {

namespace {

/// Statuses of pkexec itself (pkexec(1)): the user dismissed the question; permission was refused, or the
/// program could not be started.
constexpr int dismissed = 126;
constexpr int notAuthorized = 127;

} // namespace

std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command, const Tools &tools) {
    static std::mutex oneQuestionAtATime;
    const std::lock_guard guard(oneQuestionAtATime);
    const std::optional<ProcessResult> result =
        runProcess(tools.administratorRunner, {tools.shell, "-c", command}, StandardError::discarded);
    if (!result || result->exitStatus == dismissed || result->exitStatus == notAuthorized)
        return PrivilegedRunError{};
    return std::nullopt;
}

} // namespace brimvale
