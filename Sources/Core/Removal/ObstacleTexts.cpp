#include "Core/Removal/ObstacleTexts.h"

#include "Base/VisibleText.h"
#include "Platform/ShellQuoting.h"

#include <string_view>

namespace brimvale {

namespace {

/// How a sentence about the item begins when it is about this place.
std::string subject(const FileURL &item, const FileURL &place) {
    if (place == item)
        return "It";
    if (place == item.parent())
        return "Its parent folder";
    const std::string &path = place.path();
    const bool isInside = isAtOrUnder(path, item.path());
    return "“" + visibleText(isInside ? path.substr(item.path().size() + 1) : path) +
           (isInside ? "” in it" : "”");
}

std::string marked(std::string_view mark, RemovalObstacle obstacle, const FileURL &item,
                   const FileURL &place) {
    return subject(item, place) + " is marked " + std::string(mark) +
           ", which stops even an administrator. Clear the mark first: sudo " +
           std::string(commandAgainst(obstacle)) + " " + shownShellWord(place.path());
}

} // namespace

std::optional<std::string> obstacleText(RemovalObstacle obstacle, const FileURL &item, const FileURL &entry) {
    switch (obstacle) {
    case RemovalObstacle::locked:
        return subject(item, entry) + " is locked. An administrator can still remove it.";
    case RemovalObstacle::immutable:
        return marked("immutable", obstacle, item, entry);
    case RemovalObstacle::appendOnly:
        return marked("append-only", obstacle, item, entry);
    case RemovalObstacle::immutableParent:
        return marked("immutable", obstacle, item, entry.parent());
    case RemovalObstacle::appendOnlyParent:
        return marked("append-only", obstacle, item, entry.parent());
    case RemovalObstacle::restricted:
        return "The system protects " + (entry == item ? "it" : "“" + visibleText(entry.path()) + "”") +
               ", even from an administrator.";
    case RemovalObstacle::privacyProtection:
        return "The system’s privacy settings prevent this. Allow Full Disk Access in the system settings, "
               "then try again.";
    case RemovalObstacle::appManagement:
        return "macOS protects applications. Allow Brimvale under Privacy & Security › App Management, "
               "then try again.";
    case RemovalObstacle::none:
        break;
    }
    return std::nullopt;
}

} // namespace brimvale
