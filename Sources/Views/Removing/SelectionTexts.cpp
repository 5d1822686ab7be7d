#include "Views/Removing/SelectionTexts.h"

#include "Core/Storage/CleanupEntries.h"
#include "Views/Components/Text.h"

using namespace Qt::StringLiterals;

namespace brimvale {

QString selectionText(std::int64_t count, std::int64_t bytes) {
    return count == 0 ? u"Nothing selected"_s
                      : u"%1 selected, %2"_s.arg(counted(count, "item"), sizeText(bytes));
}

QString removalTitle(std::int64_t count, std::int64_t bytes) {
    return count == 0 ? u"Remove…"_s : u"Remove %1, %2…"_s.arg(counted(count, "Item"), sizeText(bytes));
}

QString deletionText(const std::vector<CleanupEntry> &entries) {
    return u"This deletes %1, %2. It can’t be undone."_s.arg(
        counted(static_cast<std::int64_t>(entries.size()), "item"),
        sizeText(CleanupEntries::totalSize(entries)));
}

} // namespace brimvale
