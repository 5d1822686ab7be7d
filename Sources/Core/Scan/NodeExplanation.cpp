#include "Core/Scan/NodeExplanation.h"

#include "Catalogs/Words.h"

#include <string>
#include <string_view>

namespace brimvale {

namespace {

constexpr std::string_view skippedBecause(SkipReason reason) {
    switch (reason) {
    case SkipReason::otherMachine:
        return "Its files are on another machine. Scan this folder by itself to measure it.";
    case SkipReason::program:
        return "A program provides its files, which may be on another machine. Scan this folder by itself to "
               "measure it.";
    case SkipReason::image:
        return "It shows the contents of a file, which is counted where it is.";
    case SkipReason::container:
        return "It shows files of a container, which are counted in the store of the container program.";
    case SkipReason::snapshot:
        return "A read-only snapshot shares most of its files with the folder that it was made of.";
    case SkipReason::leftOut:
        return "The imported list leaves it out.";
    case SkipReason::otherVolume:
    case SkipReason::managed:
        break;
    }
    return "System-managed location, not counted toward this scan.";
}

} // namespace

std::optional<std::string> explanation(const FSNode &node) {
    if (node.isNotDescended && node.isCloudProvider)
        return "Skipped. A cloud provider owns this folder, and measuring it would make the provider pull "
               "down the whole remote tree. Files that are not downloaded take no space here anyway.";
    if (node.isNotDescended)
        return "Skipped. " + std::string(skippedBecause(node.skipReason));
    if (node.isOtherVolume())
        return "Not scanned. Another volume is mounted here. Scan this folder by itself to measure it.";
    if (node.unreadable && node.isImported())
        return "Not readable when the list was made.";
    if (node.unreadable)
        return "Not readable. " + Words::current().measuringHelp;
    return std::nullopt;
}

std::optional<std::string> remarkOnNames(const FSNode &node) {
    if (!node.hasLinkedFiles)
        return std::nullopt;
    if (!node.isDirectory)
        return "This file has other names, too. It counts once, where the scan met it first.";
    return "Some of its files have other names, too. Each counts once, where the scan met it first.";
}

} // namespace brimvale
