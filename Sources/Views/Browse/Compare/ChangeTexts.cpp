#include "Views/Browse/Compare/ChangeTexts.h"

#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

using namespace Qt::StringLiterals;

namespace brimvale {

QString changeText(const NodeChange &change) {
    const QString growth = text(signedSize(change.growth));
    switch (change.kind) {
    case NodeChange::Kind::appeared:
        return u"new %1"_s.arg(growth);
    case NodeChange::Kind::moved:
        return change.growth == 0 ? u"moved"_s : u"moved %1"_s.arg(growth);
    case NodeChange::Kind::grew:
        return u"▲ %1"_s.arg(growth);
    case NodeChange::Kind::shrank:
        return u"▼ %1"_s.arg(growth);
    case NodeChange::Kind::unchanged:
        break;
    }
    return {};
}

QString changeSentence(const NodeChange &change) {
    switch (change.kind) {
    case NodeChange::Kind::appeared:
        return u"New since the earlier scan."_s;
    case NodeChange::Kind::moved:
        return change.earlier.empty()
                   ? u"Moved here with its folder since the earlier scan."_s
                   : u"Moved here from “%1”."_s.arg(displayedText(std::string(change.earlier)));
    case NodeChange::Kind::grew:
        return u"Grew by %1 since the earlier scan."_s.arg(sizeText(change.growth));
    case NodeChange::Kind::shrank:
        return u"Shrank by %1 since the earlier scan."_s.arg(sizeText(-change.growth));
    case NodeChange::Kind::unchanged:
        break;
    }
    return {};
}

} // namespace brimvale
