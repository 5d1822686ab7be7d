#include "Platform/PrivilegedRunner.h"

#include "Platform/Linux/RootRun.h"

namespace brimvale {

std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command, const Tools &tools) {
    const auto run = runAsRoot({tools.shell, "-c", command}, "", tools);
    const auto *error = std::get_if<PrivilegedRunError>(&run);
    return error != nullptr ? std::optional(*error) : std::nullopt;
}

Result<ProcessResult, PrivilegedRunError> runProgramAsAdministrator(const std::vector<std::string> &words,
                                                                    const Tools &tools) {
    return runAsRoot(words, "", tools);
}

} // namespace brimvale
