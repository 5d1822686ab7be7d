#include "Core/Text/Shell.h"

#include "Base/Text.h"

#include <utility>

namespace brimvale::Shell {

namespace {

std::optional<std::string> outputOf(std::optional<Result> result) {
    return result ? std::optional(std::move(result->output)) : std::nullopt;
}

std::optional<Result> asText(std::optional<ProcessResult> result) {
    if (!result || !isValidUtf8(result->output))
        return std::nullopt;
    return Result{std::move(result->output), result->exitStatus};
}

} // namespace

std::optional<std::string> run(const std::string &executable, const std::vector<std::string> &arguments) {
    return outputOf(runWithStatus(executable, arguments, StandardError::discarded));
}

std::optional<std::string> runCombined(const std::string &executable,
                                       const std::vector<std::string> &arguments) {
    return outputOf(runWithStatus(executable, arguments, StandardError::withOutput));
}

std::optional<std::string> runCombined(const std::string &executable,
                                       const std::vector<std::string> &arguments,
                                       const std::function<bool()> &isStopped) {
    return outputOf(asText(runProcess(executable, arguments, StandardError::withOutput, isStopped)));
}

std::optional<Result> runWithStatus(const std::string &executable, const std::vector<std::string> &arguments,
                                    StandardError standardError) {
    return asText(runProcess(executable, arguments, standardError));
}

} // namespace brimvale::Shell
