#include "Core/Reclaim/ReclaimTexts.h"

#include "Base/Text.h"
#include "Core/Text/Formatting.h"

namespace brimvale {

namespace {

std::string freedText(const Reclaim &reclaim) {
    const std::string least = Fmt::byteFormatter(reclaim.freesNow);
    const std::string most = Fmt::byteFormatter(reclaim.freesAtMost());
    if (least == most)
        return "Frees now: " + least;
    return reclaim.freesNow == 0 ? "Frees now: at most " + most : "Frees now: " + least + " to " + most;
}

std::string counted(std::int64_t count, const char *one, const char *several) {
    return Fmt::count(count) + " " + (count == 1 ? one : several);
}

/// The largest one by name, and the number of the others.
std::string named(const std::vector<Reclaim::Part> &parts) {
    const std::string first = displayText(parts.front().name);
    const auto others = static_cast<std::int64_t>(parts.size()) - 1;
    return others == 0 ? first : first + " and " + Fmt::count(others) + " more";
}

} // namespace

std::vector<std::string> reclaimLines(const Reclaim &reclaim) {
    std::vector<std::string> lines = {freedText(reclaim)};
    if (reclaim.linkedElsewhere > 0)
        lines.push_back("Shared: " + Fmt::byteFormatter(reclaim.linkedElsewhere) + " of " +
                        counted(reclaim.filesLinkedElsewhere, "file that has", "files that have") +
                        " other names elsewhere");
    if (reclaim.sharedElsewhere > 0)
        lines.push_back("Shared: " + Fmt::byteFormatter(reclaim.sharedElsewhere) +
                        " that copies or snapshots elsewhere also use");
    if (reclaim.inSnapshots > 0)
        lines.push_back("Held by snapshots: " + Fmt::byteFormatter(reclaim.inSnapshots) + " (" +
                        named(reclaim.snapshots) + ")");
    if (reclaim.inUse > 0)
        lines.push_back("Held by running programs: " + Fmt::byteFormatter(reclaim.inUse) + " (" +
                        named(reclaim.programs) + ")");
    if (reclaim.unreadable > 0)
        lines.push_back(counted(reclaim.unreadable, "item", "items") + " could not be looked at");
    return lines;
}

} // namespace brimvale
