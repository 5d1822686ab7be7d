#include "Core/Removal/ObstacleTexts.h"

#include <string_view>

namespace brimvale {

namespace {

std::string marked(std::string_view what, std::string_view mark, RemovalObstacle obstacle) {
    return std::string(what) + " is marked " + std::string(mark) +
           ", which stops even an administrator. Clear the mark first: sudo " +
           std::string(commandAgainst(obstacle));
}

} // namespace

std::optional<std::string> obstacleText(RemovalObstacle obstacle) {
    switch (obstacle) {
    case RemovalObstacle::locked:
        return "It is locked. An administrator can remove it all the same.";
    case RemovalObstacle::immutable:
        return marked("It", "immutable", obstacle);
    case RemovalObstacle::appendOnly:
        return marked("It", "append-only", obstacle);
    case RemovalObstacle::immutableParent:
        return marked("Its parent folder", "immutable", obstacle);
    case RemovalObstacle::appendOnlyParent:
        return marked("Its parent folder", "append-only", obstacle);
    case RemovalObstacle::restricted:
        return "The system protects it, even from an administrator.";
    case RemovalObstacle::privacyProtection:
        return "The privacy protection of the system keeps it. Full Disk Access, in the system's settings, "
               "would help.";
    case RemovalObstacle::none:
        break;
    }
    return std::nullopt;
}

} // namespace brimvale
