#include "CommandLine/CategoryWarnings.h"

#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Storage/CategoryPolicies.h"

#include <optional>

namespace brimvale::commandLine {

std::vector<RemovalResult::Failure> categoryWarnings(const std::vector<FileURL> &items) {
    const CategoryPolicies policies;
    std::vector<RemovalResult::Failure> warnings;
    for (const FileURL &url : items)
        if (const std::optional<CategoryPolicy> policy = policies.of(url))
            warnings.push_back({url, policy->title + ": " + policy->warning});
    return warnings;
}

std::vector<RemovalResult::Failure> asRefusals(std::vector<RemovalResult::Failure> warnings) {
    for (RemovalResult::Failure &warning : warnings)
        warning.reason += " Use --anyway to remove it.";
    return warnings;
}

void printWarnings(const std::vector<RemovalResult::Failure> &warnings) {
    for (const RemovalResult::Failure &warning : warnings)
        printError(terminalText(RemovalReport::failureLine(warning)));
}

} // namespace brimvale::commandLine
