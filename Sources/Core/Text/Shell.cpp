#include "Core/Text/Shell.h"

#include "Base/Text.h"

#include <utility>

namespace brimvale::Shell {

namespace {

std::optional<ProcessResult> asText(std::optional<ProcessResult> result) {
    return result && isValidUtf8(result->output) ? std::move(result) : std::nullopt;
}

std::optional<std::string> outputOf(std::optional<ProcessResult> result) {
    return result ? std::optional(std::move(result->output)) : std::nullopt;
}

} // namespace

std::optional<std::string> run(const std::string &executable, const std::vector<std::string> &arguments) {
    return outputOf(runWithStatus(executable, arguments));
}

std::optional<std::string> runCombined(const std::string &executable,
                                       const std::vector<std::string> &arguments) {
    return outputOf(runWithStatus(executable, arguments, StandardError::withOutput));
}

std::optional<ProcessResult> runWithStatus(const std::string &executable,
                                           const std::vector<std::string> &arguments,
                                           StandardError standardError,
                                           const std::function<bool()> &isStopped) {
    return asText(runProcess(executable, arguments, standardError, isStopped));
}

} // namespace brimvale::Shell
