#include "Core/Reclaim/ReclaimTexts.h"

#include "Base/Text.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <cstdint>

namespace brimvale {

namespace {

std::string freedText(const Reclaim &reclaim) {
    const std::string least = Fmt::byteFormatter(reclaim.freesNow);
    const std::string most = Fmt::byteFormatter(reclaim.freesAtMost());
    if (least == most)
        return least;
    return reclaim.freesNow == 0 ? "at most " + most : least + " to " + most;
}

/// The largest one by name, and the number of the others.
std::string named(const std::vector<Reclaim::Part> &parts) {
    const std::string first = displayText(parts.front().name);
    const auto others = static_cast<std::int64_t>(parts.size()) - 1;
    return others == 0 ? first : first + " and " + Fmt::count(others) + " more";
}

/// The other name of the largest file that has a known one, and the number of the other files.
std::string linkNames(const Reclaim &reclaim) {
    const auto known = std::find_if(reclaim.links.begin(), reclaim.links.end(),
                                    [](const Reclaim::Link &one) { return !one.otherName.empty(); });
    if (known == reclaim.links.end())
        return "";
    const std::int64_t others = reclaim.filesLinkedElsewhere - 1;
    return " (" + displayText(known->otherName) +
           (others == 0 ? "" : " and " + Fmt::count(others) + " more") + ")";
}

} // namespace

std::string_view whenFreed(RemovalMode mode) {
    return mode == RemovalMode::trash ? "Frees when the Trash is emptied" : "Deleting frees now";
}

std::vector<std::string> reclaimLines(const Reclaim &reclaim, RemovalMode mode) {
    std::vector<std::string> lines = {std::string(whenFreed(mode)).append(": ").append(freedText(reclaim))};
    if (reclaim.linkedElsewhere > 0)
        lines.push_back("Shared: " + Fmt::byteFormatter(reclaim.linkedElsewhere) + " of " +
                        Fmt::counted(reclaim.filesLinkedElsewhere, "file") +
                        (reclaim.filesLinkedElsewhere == 1 ? " that has" : " that have") +
                        " other names elsewhere" + linkNames(reclaim));
    if (reclaim.sharedElsewhere > 0)
        lines.push_back("Shared: " + Fmt::byteFormatter(reclaim.sharedElsewhere) +
                        " that copies or snapshots elsewhere also use");
    if (reclaim.inSnapshots > 0)
        lines.push_back("Held by snapshots: " + Fmt::byteFormatter(reclaim.inSnapshots) + " (" +
                        named(reclaim.snapshots) + ")");
    if (reclaim.inUse > 0)
        lines.push_back("Held by running programs: " + Fmt::byteFormatter(reclaim.inUse) + " (" +
                        named(reclaim.programs) + ")");
    if (reclaim.unaskedPrograms > 0 && reclaim.mayFree > 0)
        lines.emplace_back("Programs of other users may have some of it open. Only an administrator can see "
                           "that.");
    if (reclaim.unreadable > 0)
        lines.push_back(Fmt::counted(reclaim.unreadable, "item") + " could not be looked at");
    return lines;
}

FreePromise promiseOf(const Reclaim &reclaim) {
    const std::vector<std::string> lines = reclaimLines(reclaim, RemovalMode::deleteNow);
    return {.atLeast = reclaim.freesNow,
            .atMost = reclaim.freesAtMost(),
            .holders = {lines.begin() + 1, lines.end()}};
}

} // namespace brimvale
