#include "Views/Browse/Outline/NodeIcon.h"

#include "Views/Components/Icons.h"

namespace brimvale {

QString nodeIconName(const FSNode &node) {
    if (node.isNotDescended)
        return node.isCloudProvider ? QStringLiteral("cloud-off") : QStringLiteral("ban");
    if (node.unreadable)
        return QStringLiteral("lock");
    if (node.isAggregate)
        return QStringLiteral("files");
    return Icons::nameFor(node.isDirectory);
}

} // namespace brimvale
