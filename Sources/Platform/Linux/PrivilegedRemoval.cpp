#include "Platform/PrivilegedRemoval.h"

#include "Base/Text.h"
#include "Platform/FileStatus.h"
#include "Platform/Linux/RemovalRequest.h"
#include "Platform/Linux/RootRun.h"
#include "Platform/MainBundle.h"

#include <limits>

namespace brimvale {

namespace {

/// The status of the program that removes for a request that it does not accept. Then it removes nothing.
constexpr int requestRefused = 2;

} // namespace

std::size_t longestPrivilegedRemoval() {
    return std::numeric_limits<std::size_t>::max();
}

Result<KeptReasons, PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &items,
                                                              const Tools &tools) {
    const std::string request = removalRequest(items);
    if (request.size() > longestRemovalRequest)
        return PrivilegedRunError{"These are too many items for one request. Nothing was removed."};
    const FileURL program = mainBundle().url.parent().parent().appending(removalProgram);
    if (!fileStatus(program.path()))
        return PrivilegedRunError{"The program that removes items as administrator is missing: " +
                                  displayText(program.path())};
    const auto run = runAsRoot({program.path()}, request, tools);
    if (const auto *error = std::get_if<PrivilegedRunError>(&run))
        return *error;
    const auto &result = std::get<ProcessResult>(run);
    if (result.exitStatus == requestRefused)
        return PrivilegedRunError{
            "The program that removes items as administrator belongs to another version "
            "of Brimvale. Nothing was removed."};
    return reasonsOfAnswer(result.output, items.size());
}

} // namespace brimvale
