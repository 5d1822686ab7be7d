#include "Views/Removing/SelectionTexts.h"

#include "Core/Text/Formatting.h"
#include "Views/Components/Text.h"

using namespace Qt::StringLiterals;

namespace brimvale {

QString selectionText(std::int64_t count, std::int64_t bytes) {
    const QString size = sizeText(bytes);
    if (count == 0)
        return u"Nothing selected"_s;
    return count == 1 ? u"1 item selected, %1"_s.arg(size)
                      : u"%1 items selected, %2"_s.arg(text(Fmt::count(count)), size);
}

QString removalTitle(std::int64_t count, std::int64_t bytes) {
    const QString size = sizeText(bytes);
    if (count == 0)
        return u"Remove…"_s;
    return count == 1 ? u"Remove 1 Item, %1…"_s.arg(size)
                      : u"Remove %1 Items, %2…"_s.arg(text(Fmt::count(count)), size);
}

} // namespace brimvale
