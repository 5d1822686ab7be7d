#include "Views/Window/SpaceTexts.h"

#include "Core/Removal/RemovalResult.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

using namespace Qt::StringLiterals;

namespace brimvale {

QString trashText(std::int64_t bytes) {
    return u"%1 moved to the Trash. Empty the Trash to free the space."_s.arg(sizeText(bytes));
}

QStringList spaceLines(const RemovalResult &result) {
    QStringList lines;
    if (result.bytesMovedToTrash > 0) {
        lines.append(trashText(result.bytesMovedToTrash));
        if (result.bytesDeleted > 0)
            lines.append(u"%1 freed."_s.arg(sizeText(result.bytesDeleted)));
    }
    if (!result.freeSpaceRemark.empty())
        lines.append(displayedText(result.freeSpaceRemark));
    return lines;
}

} // namespace brimvale
