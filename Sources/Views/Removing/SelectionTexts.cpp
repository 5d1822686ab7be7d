#include "Views/Removing/SelectionTexts.h"

#include "Core/Text/Formatting.h"
#include "Views/Components/Text.h"

#include <QCoreApplication>

namespace brimvale {

namespace {

QString word(const char *english) {
    return QCoreApplication::translate("SelectionTexts", english);
}

} // namespace

QString selectionText(std::int64_t count, std::int64_t bytes) {
    const QString size = sizeText(bytes);
    if (count == 0)
        return word("Nothing selected");
    return count == 1 ? word("1 item selected, %1").arg(size)
                      : word("%1 items selected, %2").arg(text(Fmt::count(count)), size);
}

QString removalTitle(std::int64_t count, std::int64_t bytes) {
    const QString size = sizeText(bytes);
    if (count == 0)
        return word("Remove…");
    return count == 1 ? word("Remove 1 Item, %1…").arg(size)
                      : word("Remove %1 Items, %2…").arg(text(Fmt::count(count)), size);
}

} // namespace brimvale
