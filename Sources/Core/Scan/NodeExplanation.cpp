#include "Core/Scan/NodeExplanation.h"

#include "Catalogs/Words.h"

namespace brimvale {

std::optional<std::string> explanation(const FSNode &node) {
    if (node.isNotDescended && node.isCloudProvider)
        return "Skipped. A cloud provider owns this folder, and measuring it would make the provider pull "
               "down the whole remote tree. Files that are not downloaded take no space here anyway.";
    if (node.isNotDescended)
        return "Skipped. System-managed location, not counted toward this scan.";
    if (node.unreadable)
        return "Not readable. " + Words::current().measuringHelp;
    return std::nullopt;
}

} // namespace brimvale
