#include "Core/Update/CodeSignature.h"

#include "Core/Text/Shell.h"
#include "Core/Update/SigningTeam.h"

#include <string>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

bool verifies(const FileURL &program, std::vector<std::string> options, const Tools &tools) {
    options.insert(options.begin(), {"--verify", "--deep", "--strict"});
    options.push_back(program.path());
    const auto result = Shell::runWithStatus(tools.codesign, options);
    return result && result->hasSucceeded();
}

} // namespace

bool isValidlySigned(const FileURL &program, const Tools &tools) {
    return verifies(program, {}, tools);
}

bool isSignedByOurTeam(const FileURL &program, const Tools &tools) {
    return verifies(program, {"-R", std::string(teamRequirement)}, tools);
}

} // namespace brimvale
