#include "Views/Components/NodeName.h"

#include "Base/VisibleText.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Text.h"

#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace brimvale {

QString displayedText(std::string_view bytes) {
    return QString::fromStdString(visibleText(bytes));
}

QString nodeSizeText(const FSNode &node) {
    const QString size = sizeText(node.size);
    return node.isAtLeast() ? u"≥ %1"_s.arg(size) : size;
}

QString nodeIconName(const FSNode &node) {
    if (node.isNotDescended)
        return node.isCloudProvider ? QStringLiteral("cloud-off") : QStringLiteral("ban");
    if (node.isOtherVolume())
        return QStringLiteral("hard-drive");
    if (node.unreadable)
        return QStringLiteral("lock");
    if (node.isAggregate)
        return QStringLiteral("files");
    return Icons::nameFor(node.isDirectory);
}

QString asLabel(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString asToolTip(const QString &text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpacePre) : text;
}

} // namespace brimvale
